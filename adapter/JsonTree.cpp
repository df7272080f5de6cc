#include "adapter/JsonTree.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>

namespace va {

namespace {

/// Walks over the text and counts the line ends that the parser has consumed.
class LineCountingIterator
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char *;
    using reference = const char &;

    LineCountingIterator(const char *at, int *lines)
        : m_at(at)
        , m_lines(lines)
    {
    }
    reference operator*() const { return *m_at; }
    LineCountingIterator &operator++()
    {
        if (*m_at == '\n') {
            ++*m_lines;
        }
        ++m_at;
        return *this;
    }
    bool operator==(const LineCountingIterator &other) const { return m_at == other.m_at; }
    bool operator!=(const LineCountingIterator &other) const { return m_at != other.m_at; }

private:
    const char *m_at;
    int *m_lines;
};

/// Builds the tree from the parser's events. Values inside an object take the line of their key: the parser has just
/// read the key's closing quote then, while behind a number it may already have taken the line end.
class TreeBuilder
{
public:
    using number_integer_t = nlohmann::json::number_integer_t;
    using number_unsigned_t = nlohmann::json::number_unsigned_t;
    using number_float_t = nlohmann::json::number_float_t;
    using string_t = nlohmann::json::string_t;
    using binary_t = nlohmann::json::binary_t;

    explicit TreeBuilder(const int &line)
        : m_line(line)
    {
    }

    bool null() { return scalar(std::monostate{}); }
    bool boolean(bool value) { return scalar(value); }
    bool number_integer(number_integer_t value)
    {
        const auto bits = static_cast<std::uint64_t>(value);
        return scalar(JsonValue::Integer{value < 0 ? 0 - bits : bits, value < 0});
    }
    bool number_unsigned(number_unsigned_t value) { return scalar(JsonValue::Integer{value, false}); }
    bool number_float(number_float_t value, const string_t & /*text*/) { return scalar(value); }
    bool string(string_t &value) { return scalar(std::move(value)); }
    bool binary(binary_t & /*value*/) { return refuse("binary values are not allowed"); }

    bool start_object(std::size_t /*size*/) { return open(JsonValue::Object{}); }
    bool start_array(std::size_t /*size*/) { return open(JsonValue::Array{}); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }

    bool key(string_t &name)
    {
        auto &members = std::get<JsonValue::Object>(m_open.back().value);
        m_key = name;
        const bool known = std::any_of(members.begin(), members.end(),
                                       [&name](const JsonValue::Member &member) { return member.first == name; });
        return known ? refuse("the key is given twice") : rememberKey(std::move(name));
    }

    bool parse_error(std::size_t /*position*/, const std::string & /*token*/,
                     const nlohmann::json::exception &exception)
    {
        m_error = ConfigError{lineNamedIn(exception.what()), m_key, "not valid JSON"};
        return false;
    }

    std::variant<JsonValue, ConfigError> take()
    {
        if (m_error) {
            return std::move(*m_error);
        }
        return std::move(m_root);
    }

private:
    template<class Value>
    bool scalar(Value &&value)
    {
        JsonValue leaf;
        leaf.value = std::forward<Value>(value);
        return count() && attach(std::move(leaf));
    }

    template<class Container>
    bool open(Container &&container)
    {
        if (m_open.size() >= MaxJsonDepth) {
            return refuse("nested too deeply");
        }
        JsonValue opened;
        opened.value = std::forward<Container>(container);
        opened.line = ownLine(true);
        m_open.push_back(std::move(opened));
        m_openKeys.push_back(takeKey());
        return count();
    }

    bool close()
    {
        JsonValue closed = std::move(m_open.back());
        m_open.pop_back();
        m_pendingKey = std::move(m_openKeys.back());
        m_openKeys.pop_back();
        m_pendingLine = closed.line;
        return attach(std::move(closed));
    }

    bool attach(JsonValue &&child)
    {
        if (child.line == 0) {
            child.line = ownLine(false);
        }
        if (m_open.empty()) {
            m_root = std::move(child);
        } else if (auto *items = std::get_if<JsonValue::Array>(&m_open.back().value)) {
            items->push_back(std::move(child));
        } else {
            std::get<JsonValue::Object>(m_open.back().value).emplace_back(takeKey(), std::move(child));
        }
        return true;
    }

    bool count() { return ++m_values <= MaxJsonValues || refuse("too many values"); }

    bool rememberKey(std::string &&name)
    {
        m_pendingKey = std::move(name);
        m_pendingLine = m_line;
        return true;
    }

    std::string takeKey() { return std::move(m_pendingKey); }

    /// Of the value that comes now. A plain item of an array takes the line of the array.
    int ownLine(bool isContainer) const
    {
        if (m_open.empty()) {
            return m_line;
        }
        const bool inObject = std::holds_alternative<JsonValue::Object>(m_open.back().value);
        const int lineInArray = isContainer ? m_line : m_open.back().line;
        return inObject ? m_pendingLine : lineInArray;
    }

    bool refuse(const char *problem)
    {
        m_error = ConfigError{m_line, m_key, problem};
        return false;
    }

    /// The parser knows the place of a syntax error exactly and says it in its text: "... at line 3, column 5 ...".
    /// Column 0 means that it stopped at a line end, which it counts to the next line.
    int lineNamedIn(const char *text) const
    {
        int line = 0;
        int column = 0;
        const char *place = std::strstr(text, " at line ");
        if (place == nullptr || std::sscanf(place, " at line %d, column %d", &line, &column) != 2) {
            return m_line;
        }
        return column == 0 && line > 1 ? line - 1 : line;
    }

    const int &m_line;
    JsonValue m_root;
    std::vector<JsonValue> m_open;       ///< containers that are not closed yet
    std::vector<std::string> m_openKeys; ///< the key of each of them in its parent
    std::string m_pendingKey;            ///< key whose value comes next
    int m_pendingLine = 1;
    std::string m_key; ///< last key read, for messages
    std::size_t m_values = 0;
    std::optional<ConfigError> m_error;
};

} // namespace

std::variant<JsonValue, ConfigError> parseJson(const std::string &text)
{
    int line = 1;
    TreeBuilder builder(line);
    const LineCountingIterator begin(text.data(), &line);
    const LineCountingIterator end(text.data() + text.size(), &line);
    nlohmann::json::sax_parse(begin, end, &builder);
    return builder.take();
}

} // namespace va
