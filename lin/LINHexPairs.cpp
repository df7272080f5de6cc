#include "lin/LINHexPairs.h"

#include <algorithm>
#include <array>
#include <charconv>

QByteArray bytesOfHexPairs(const QString &text, int length)
{
    QByteArray bytes;
    bytes.reserve(std::min(length, text.size()));
    std::array<char, 2> pair{};
    std::size_t characters = 0;
    const auto wanted = 2 * static_cast<std::size_t>(std::max(length, 0));
    for (const QChar *c = text.begin(); c != text.end() && characters < wanted; ++c) {
        if (c->isSpace()) {
            continue;
        }
        pair[characters++ % 2] = c->toLatin1();
        quint8 byte = 0;
        if (characters % 2 == 0 && std::from_chars(pair.begin(), pair.end(), byte, 16).ptr == pair.end()) {
            bytes.append(static_cast<char>(byte));
        }
    }
    return bytes;
}

bool hasHexPairs(const QString &text, int length)
{
    return std::count_if(text.begin(), text.end(), [](QChar c) { return !c.isSpace(); }) / 2 >= length;
}
