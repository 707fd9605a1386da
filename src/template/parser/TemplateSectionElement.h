#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "template/parser/TemplateAttributeParser.h"

// What becomes of an attribute that an element has no row for.
enum class OtherAttributes {
    Refused, // it is an error
    Kept,    // nobody looks at it
};

// An attribute that an element takes. Of several that are missing the one with the lowest number is reported;
// 0 is an attribute that may be missing.
struct AttributeRow {
    static constexpr int Optional = 0;

    std::string_view name;
    int required;
};

// All attributes of an element. Lives as long as the program.
struct AttributeTable {
    OtherAttributes others;
    std::vector<AttributeRow> rows;
};

// For an attribute that its section evaluates by itself, elsewhere or only when it is needed.
constexpr std::monostate EvaluatedApart;

// An attribute table whose rows also say where the values go, so that all of them can be evaluated at once,
// in the order of the rows: values may depend on what was evaluated before.
template <class Values>
struct ValueTable : AttributeTable {
    // A missing attribute has the value of an empty text.
    using Member = std::variant<std::monostate,                       // EvaluatedApart
                                std::string Values::*,                // the text
                                std::optional<std::string> Values::*, // the text; nothing if it is missing
                                int32_t Values::*,                    // what ParseInteger makes of it
                                bool Values::*>;                      // whether it is "true"
    struct Row {
        std::string_view name;
        int required;
        Member member;
    };

    ValueTable(OtherAttributes others, std::initializer_list<Row> valueRows) : AttributeTable{others, {}}
    {
        for (const Row& row : valueRows) {
            rows.push_back({row.name, row.required});
            members.push_back(row.member);
        }
    }

    std::vector<Member> members; // one for each row
};

// An element with attributes. Its table says which it takes, which must be there and what becomes of others;
// a derived class hands over the table and evaluates. Values are sections, evaluated on each use: an
// attribute that holds a variable follows the iterator. Owned by its parent; used by one thread.
class CTemplateSectionElement : public CTemplateSection {
public:
    // Throws CTemplateParsingException for an attribute that is missing or refused.
    void OnClosingBracket() override;
    void Clear() override;
    void AddText(const char* text, size_t length) override;
    void AddSection(const char* name, std::unique_ptr<CTemplateSection> section) override;
    void OnEndOfFile(const char* text, size_t length) override;

protected:
    explicit CTemplateSectionElement(const AttributeTable& table) : table(table) {}

    void TellObserver(CTemplateObserver& observer) const override;

    // name in all of these: of a row of the table. An element whose closing bracket was never reached has no
    // attributes, whatever has been read of it.

    bool Has(std::string_view name) const { return Find(name) != nullptr; }

    // The text in the present state of the iterator; "" for an attribute that is missing.
    std::string Evaluate(std::string_view name, CImageIterator& iterator, CContentGenerator& generator) const;

    // values: the element's own table.
    template <class Values>
    Values EvaluateAll(const ValueTable<Values>& values, CImageIterator& iterator,
                       CContentGenerator& generator) const;

private:
    CTemplateSection* Find(std::string_view name) const;
    bool IsInTable(std::string_view name) const;

    static void Store(std::string& value, std::optional<std::string> text);
    static void Store(std::optional<std::string>& value, std::optional<std::string> text);
    static void Store(int32_t& value, std::optional<std::string> text);
    static void Store(bool& value, std::optional<std::string> text);

    const AttributeTable& table;
    CTemplateAttributeParser parser;
    // By name, in byte order: the first one that is refused is reported.
    std::map<std::string, std::unique_ptr<CTemplateSection>, std::less<>> attributes;
    bool isClosed = false;
};

template <class Values>
Values CTemplateSectionElement::EvaluateAll(const ValueTable<Values>& values, CImageIterator& iterator,
                                            CContentGenerator& generator) const
{
    Values result;
    for (size_t i = 0; i < values.rows.size(); ++i) {
        const auto store = [&](auto member) {
            if constexpr (!std::is_same_v<decltype(member), std::monostate>) {
                CTemplateSection* const section = Find(values.rows[i].name);
                Store(result.*member,
                      section ? std::optional(section->GenerateToString(iterator, generator)) : std::nullopt);
            }
        };
        std::visit(store, values.members[i]);
    }
    return result;
}
