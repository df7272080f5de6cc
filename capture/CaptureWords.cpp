#include "capture/CaptureWords.h"

#include <algorithm>
#include <vector>

namespace {

struct Spelling
{
    FrameLabel label;
    std::string_view bytes;
};

/// Of each word first the English and then the Chinese spelling that is written, where there is one, in UTF-8; then
/// the same in GBK, and what else is read: traditional characters, in both encodings.
constexpr Spelling Spellings[] = {
    {FrameLabel::None, "None"},
    {FrameLabel::None, "\xE6\x97\xA0"},
    {FrameLabel::None, "\xCE\xDE"},
    {FrameLabel::Received, "Revice"},
    {FrameLabel::Received, "\xE6\x8E\xA5\xE6\x94\xB6"},
    {FrameLabel::Received, "\xBD\xD3\xCA\xD5"},
    {FrameLabel::SendSuccess, "Send successfully"},
    {FrameLabel::SendSuccess, "\xE5\x8F\x91\xE9\x80\x81\xE6\x88\x90\xE5\x8A\x9F"},
    {FrameLabel::SendSuccess, "\xB7\xA2\xCB\xCD\xB3\xC9\xB9\xA6"},
    {FrameLabel::SendFailure, "Send failure"},
    {FrameLabel::SendFailure, "\xE5\x8F\x91\xE9\x80\x81\xE5\xA4\xB1\xE8\xB4\xA5"},
    {FrameLabel::SendFailure, "\xB7\xA2\xCB\xCD\xCA\xA7\xB0\xDC"},
    {FrameLabel::Can, "CAN"},
    {FrameLabel::CanFd, "CANFD"},
    {FrameLabel::CanFdSpeed, "CANFD Speed"},
    {FrameLabel::CanFdSpeed, "CANFD\xE5\x8A\xA0\xE9\x80\x9F"},
    {FrameLabel::CanFdSpeed, "CANFD\xBC\xD3\xCB\xD9"},
    {FrameLabel::Data, "Data"},
    {FrameLabel::Data, "\xE6\x95\xB0\xE6\x8D\xAE\xE5\xB8\xA7"},
    {FrameLabel::Data, "\xCA\xFD\xBE\xDD\xD6\xA1"},
    {FrameLabel::Remote, "Remote"},
    {FrameLabel::Remote, "\xE8\xBF\x9C\xE7\xA8\x8B\xE5\xB8\xA7"},
    {FrameLabel::Remote, "\xD4\xB6\xB3\xCC\xD6\xA1"},
    {FrameLabel::Standard, "Standard"},
    {FrameLabel::Standard, "\xE6\xA0\x87\xE5\x87\x86\xE5\xB8\xA7"},
    {FrameLabel::Standard, "\xB1\xEA\xD7\xBC\xD6\xA1"},
    {FrameLabel::Standard, "\xE6\xA8\x99\xE6\xBA\x96\xE5\xB9\x80"},
    {FrameLabel::Standard, "\x98\xCB\x9C\xCA\x8E\xAC"},
    {FrameLabel::Extend, "Extend"},
    {FrameLabel::Extend, "\xE6\x89\xA9\xE5\xB1\x95\xE5\xB8\xA7"},
    {FrameLabel::Extend, "\xC0\xA9\xD5\xB9\xD6\xA1"},
    {FrameLabel::Extend, "\xE6\x93\xB4\xE5\xB1\x95\xE5\xB9\x80"},
    {FrameLabel::Extend, "\x94\x55\xD5\xB9\x8E\xAC"},
    {FrameLabel::Extend, "Extended"},
};

struct Title
{
    const char *english;
    const char *chinese; ///< UTF-8
};

/// In the order of FrameColumn.
constexpr std::array<Title, FrameColumnCount> Titles = {{
    {"No.", "No."},
    {"System Time", "\xE7\xB3\xBB\xE7\xBB\x9F\xE6\x97\xB6\xE9\x97\xB4"},
    {"Time Stamp", "\xE6\x97\xB6\xE9\x97\xB4\xE6\x88\xB3"},
    {"Direction", "\xE6\x96\xB9\xE5\x90\x91"},
    {"ID", "\xE5\xB8\xA7ID"},
    {"Protocol", "\xE5\x8D\x8F\xE8\xAE\xAE"},
    {"Format", "\xE5\xB8\xA7\xE6\xA0\xBC\xE5\xBC\x8F"},
    {"Type", "\xE5\xB8\xA7\xE7\xB1\xBB\xE5\x9E\x8B"},
    {"Length", "\xE9\x95\xBF\xE5\xBA\xA6"},
    {"Data", "\xE6\x95\xB0\xE6\x8D\xAE"},
}};

bool isAsciiOnly(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<uchar>(c) < 0x80; });
}

QString written(FrameLabel label, bool isChinese)
{
    const auto *first = std::find_if(std::begin(Spellings), std::end(Spellings),
                                     [label](const Spelling &spelling) { return spelling.label == label; });
    const auto *second = first + 1;
    const bool hasChinese = second != std::end(Spellings) && second->label == label && !isAsciiOnly(second->bytes);
    const std::string_view bytes = (isChinese && hasChinese ? second : first)->bytes;
    return QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
}

constexpr std::size_t MaxWord = 20; ///< bytes

/// Looking a word up is a matter of a few comparisons then.
std::array<std::vector<Spelling>, MaxWord + 1> spellingsBySize()
{
    std::array<std::vector<Spelling>, MaxWord + 1> bySize;
    for (const Spelling &spelling : Spellings) {
        bySize.at(spelling.bytes.size()).push_back(spelling);
    }
    return bySize;
}

} // namespace

std::optional<FrameLabel> captureWord(std::string_view cell)
{
    static const auto bySize = spellingsBySize();
    if (cell.empty() || cell.size() > MaxWord) {
        return std::nullopt;
    }
    for (const Spelling &spelling : bySize[cell.size()]) {
        if (spelling.bytes.front() == cell.front() && spelling.bytes == cell) {
            return spelling.label;
        }
    }
    return std::nullopt;
}

FrameLabels captureLabels(bool isChinese)
{
    FrameLabels labels;
    std::transform(Titles.begin(), Titles.end(), labels.titles.begin(), [isChinese](const Title &title) {
        return QString::fromUtf8(isChinese ? title.chinese : title.english);
    });
    for (std::size_t i = 0; i < labels.words.size(); ++i) {
        labels.words[i] = written(static_cast<FrameLabel>(i), isChinese);
    }
    return labels;
}
