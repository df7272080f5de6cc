#pragma once

#include <QtGlobal>

#include <string_view>

/// The words of the table of LIN frames and of its files, once for all who write and read them.
namespace LINWords {

struct Word
{
    const char *english; ///< as it is written, and what the user's language is looked up by
    const char *chinese; ///< as it is written, UTF-8
    const char *gbk;     ///< the same in GBK

    constexpr bool isIn(std::string_view text) const { return text == english || text == chinese || text == gbk; }
};

constexpr Word Send = {QT_TRANSLATE_NOOP("LINFrameModel", "Send"), "\xE5\x8F\x91\xE9\x80\x81", "\xB7\xA2\xCB\xCD"};
constexpr Word Received = {QT_TRANSLATE_NOOP("LINFrameModel", "Revice"), "\xE6\x8E\xA5\xE6\x94\xB6",
                           "\xBD\xD3\xCA\xD5"};
/// "(V1)" or "(V2)" follows.
constexpr Word WrongChecksum = {QT_TRANSLATE_NOOP("LINFrameModel", "Error checksum"),
                                "\xE6\xA0\xA1\xE9\xAA\x8C\xE5\x92\x8C\xE9\x94\x99\xE8\xAF\xAF",
                                "\xD0\xA3\xD1\xE9\xBA\xCD\xB4\xED\xCE\xF3"};
constexpr Word Wrong = {QT_TRANSLATE_NOOP("LINFrameModel", "Error state"),
                        "\xE7\x8A\xB6\xE6\x80\x81\xE9\x94\x99\xE8\xAF\xAF", "\xD7\xB4\xCC\xAC\xB4\xED\xCE\xF3"};

/// The titles, joined by commas, in both languages; the second one in UTF-8.
constexpr const char *EnglishTitles = "No.,System Time,Direction,ID[PID],Length,Data(Hex),Check(Hex),State";
constexpr const char *ChineseTitles = "No.,\xE7\xB3\xBB\xE7\xBB\x9F\xE6\x97\xB6\xE9\x97\xB4,\xE6\x96\xB9\xE5\x90\x91,"
                                      "ID[PID],\xE9\x95\xBF\xE5\xBA\xA6,\xE6\x95\xB0\xE6\x8D\xAE(Hex),"
                                      "\xE6\xA0\xA1\xE9\xAA\x8C(Hex),\xE7\x8A\xB6\xE6\x80\x81";
/// The same in every language and encoding.
constexpr std::string_view IdTitle = ",ID[PID],";

} // namespace LINWords
