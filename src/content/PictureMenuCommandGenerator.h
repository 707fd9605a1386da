#pragma once

#include <cstdint>
#include <string>

#include <QString>

// Writes the script expression of a button: the call of window.external, after its point. The commands are
// the numbers of the buttons. Stateless or a record of arguments; lives on the stack of one element.
class CPictureMenuCommandGenerator {
public:
    virtual ~CPictureMenuCommandGenerator() = default;
    // Appends the expression of the button for the object id; nothing for a command that it does not know.
    virtual void GenerateCommand(int32_t command, const std::string& id, QString& out) const = 0;
};

class CFolderViewCommandGenerator final : public CPictureMenuCommandGenerator {
public:
    void GenerateCommand(int32_t command, const std::string& id, QString& out) const override;
};

class CPreviewCommandGenerator final : public CPictureMenuCommandGenerator {
public:
    CPreviewCommandGenerator() = default;

    // Borrowed; null for an argument that the element does not have.
    const std::string* argument1 = nullptr;
    const std::string* argument2 = nullptr;
    const std::string* argument3 = nullptr;
    bool multiline = false;

    void GenerateCommand(int32_t command, const std::string& id, QString& out) const override;

private:
    QString Arguments(int32_t command, const QString& id) const;
};

class CGalleriesPictureMenuCommandGenerator final : public CPictureMenuCommandGenerator {
public:
    explicit CGalleriesPictureMenuCommandGenerator(int32_t galleryId) : galleryId(galleryId) {}
    void GenerateCommand(int32_t command, const std::string& id, QString& out) const override;

private:
    const int32_t galleryId;
};
