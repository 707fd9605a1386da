#pragma once

#include <QDialog>
#include <QString>

class QLineEdit;

// Edits the address and the text of a reference in a page. Owned by its caller; both texts are copied, and
// the edited ones are read after Accepted.
class CDlgEditHref final : public QDialog {
    Q_OBJECT

public:
    static constexpr int Limit = 512; // UTF-16 units, of each text

    struct Reference {
        QString url;
        QString text;
    };

    // name: of the page's element, the title. What is longer than the limit is cut.
    CDlgEditHref(const QString& name, const Reference& reference, QWidget* parent);

    Reference GetReference() const;

private:
    QLineEdit* url;
    QLineEdit* text;
};
