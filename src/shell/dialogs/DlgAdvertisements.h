#pragma once

#include <map>

#include <QDialog>
#include <QString>

class QComboBox;
class QPlainTextEdit;

// Edits the HTML of a page's advertisement blocks. Owned by its caller; the map is copied, and the edited one
// is read after Accepted.
class CDlgAdvertisements final : public QDialog {
    Q_OBJECT

public:
    using Sections = std::map<QString, QString>; // HTML by the name of the section

    CDlgAdvertisements(const Sections& sections, QWidget* parent);

    const Sections& GetSections() const { return sections; }

    void accept() override;

private:
    void OnSectionChanged(int index);
    void StoreCode();
    void ShowCode(int index);

    Sections sections;
    QString shownSection;
    QComboBox* section;
    QPlainTextEdit* code;
};
