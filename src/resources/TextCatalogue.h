#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QString>

// The texts of another language. Asked on any thread, by several at once.
class CTextCatalogue {
public:
    virtual ~CTextCatalogue() = default;

    // The text of that number; nothing if the catalogue hasn't got it, and the English one is taken. numbers:
    // those among the arguments that will be put in, in their order, by which a language that needs it
    // chooses among plural forms; empty if there are none.
    //
    // The placeholders have to fit those of the English text (see FitsPlaceholders in
    // resources/FormatText.h), or the English one is taken as well: a person shall never see a sentence
    // without the name that it is about.
    virtual std::optional<QString> FindText(int number, const std::vector<int>& numbers) const = 0;
};

// From now on texts come from this catalogue; null: from none. What shows already stays as it is, so a
// program installs its catalogue before its first text. Thread-safe.
void InstallTextCatalogue(std::shared_ptr<const CTextCatalogue> catalogue);

// Null if none is installed. Thread-safe.
std::shared_ptr<const CTextCatalogue> FindTextCatalogue();
