#include "adapter/JsonTree.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

namespace va {

namespace {

/// Builds the tree from the parser's events. Values inside an object take the line of their key: the parser has just
/// read the key's closing quote then, while behind a number it may already have taken the line end.
class TreeBuilder : public nlohmann::json_sax<nlohmann::json>
{
public:
    explicit TreeBuilder(const std::string &text)
        : m_text(text)
        , m_input(text)
    {
    }

    JsonValue build()
    {
        nlohmann::json::sax_parse(m_input, this);
        return std::move(m_root);
    }

    bool null() override { return leaf({}); }
    bool boolean(bool value) override { return leaf(value); }
    bool number_integer(number_integer_t value) override
    {
        return value < 0 ? leaf({}) : leaf(static_cast<std::uint64_t>(value));
    }
    bool number_unsigned(number_unsigned_t value) override { return leaf(value); }
    bool number_float(number_float_t /*value*/, const string_t & /*text*/) override { return leaf({}); }
    bool string(string_t &value) override { return leaf(std::move(value)); }
    bool binary(binary_t & /*value*/) override { return leaf({}); } // there is none in a text

    bool start_object(std::size_t /*size*/) override { return open(JsonValue::Object{}); }
    bool start_array(std::size_t /*size*/) override { return open(JsonValue::Array{}); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t &name) override
    {
        m_key = name;
        auto &members = std::get<JsonValue::Object>(m_open.back()->value);
        if (std::any_of(members.begin(), members.end(), [&name](const auto &member) { return member.first == name; })) {
            refuse("the key is given twice");
        }
        members.emplace_back(std::move(name), JsonValue{line(), {}});
        return true;
    }

    /// The last of the characters up to position is the one that is wrong; a line end belongs to the line before it.
    bool parse_error(std::size_t position, const std::string & /*token*/,
                     const nlohmann::json::exception & /*exception*/) override
    {
        const auto right = static_cast<std::ptrdiff_t>(std::min(std::max(position, std::size_t{1}) - 1, m_text.size()));
        const auto ends = std::count(m_text.begin(), m_text.begin() + right, '\n');
        throw ConfigError{1 + static_cast<int>(ends), m_key, "not valid JSON"};
    }

private:
    using Content = decltype(JsonValue::value);

    bool leaf(Content content)
    {
        next().value = std::move(content);
        return true;
    }

    bool open(Content container)
    {
        if (m_open.size() >= MaxJsonDepth) {
            refuse("nested too deeply");
        }
        JsonValue &opened = next();
        if (!m_open.empty() && std::holds_alternative<JsonValue::Array>(m_open.back()->value)) {
            opened.line = line();
        }
        opened.value = std::move(container);
        m_open.push_back(&opened);
        return true;
    }

    bool close()
    {
        m_open.pop_back();
        return true;
    }

    /// The place of the value that comes now, with its line.
    JsonValue &next()
    {
        if (++m_values > MaxJsonValues) {
            refuse("too many values");
        }
        if (m_open.empty()) {
            m_root.line = line();
            return m_root;
        }
        JsonValue &parent = *m_open.back();
        if (auto *members = std::get_if<JsonValue::Object>(&parent.value)) {
            return members->back().second;
        }
        return std::get<JsonValue::Array>(parent.value).emplace_back(JsonValue{parent.line, {}});
    }

    /// The line up to which the parser has taken the text.
    int line()
    {
        const std::streamoff place = m_input.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in);
        const auto taken = static_cast<std::ptrdiff_t>(place);
        m_line += static_cast<int>(std::count(m_text.begin() + m_counted, m_text.begin() + taken, '\n'));
        m_counted = taken;
        return m_line;
    }

    [[noreturn]] void refuse(const char *problem) { throw ConfigError{line(), m_key, problem}; }

    const std::string &m_text;
    std::istringstream m_input;
    int m_line = 1;
    std::ptrdiff_t m_counted = 0; ///< characters before m_line is right
    JsonValue m_root;
    std::vector<JsonValue *> m_open; ///< containers that are not closed yet, each inside the one before
    std::string m_key;               ///< last key read, for messages
    std::size_t m_values = 0;
};

} // namespace

JsonValue parseJson(const std::string &text)
{
    return TreeBuilder(text).build();
}

} // namespace va
