#pragma once

#include <QDialog>
#include <QString>

class QLineEdit;
class CLimitedTextEdit;

// Edits one text of a page, of one line or several. Owned by its caller; the text that it was made with is
// copied, and the edited one is read after Accepted.
class CDlgEditTextProperty final : public QDialog {
    Q_OBJECT

public:
    // In UTF-16 units; of several lines each line end counts as two.
    static constexpr int LineLimit = 1024;
    static constexpr int TextLimit = 16192;

    struct Options {
        bool multiline = false;
        bool galleryWide = false; // the text stands in each page, and a note says so
    };

    // name: of the page's element, the title. text: as pages hold it, with "</br>" for a line end of a text
    // of several lines. What is longer than the limit is cut.
    CDlgEditTextProperty(const QString& name, const QString& text, Options options, QWidget* parent);

    // In the form of the constructor.
    QString GetText() const;

private:
    QWidget* MakeEdit(const QString& text, bool multiline);

    QLineEdit* line = nullptr;         // of one line, else null
    CLimitedTextEdit* lines = nullptr; // of several lines, else null
};
