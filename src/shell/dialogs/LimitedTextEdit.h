#pragma once

#include <QPlainTextEdit>

// An edit of several lines that takes a limited number of characters: of a text typed or pasted it takes as
// much as has room, and what stood there before stays. Tab leaves the edit.
class CLimitedTextEdit final : public QPlainTextEdit {
    Q_OBJECT

public:
    // limit: as LengthWithLineEnds counts.
    explicit CLimitedTextEdit(qsizetype limit, QWidget* parent = nullptr);

    // In place of setPlainText, which knows no limit.
    void SetText(const QString& text);

protected:
    void insertFromMimeData(const QMimeData* source) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    // For a text that takes the place of the selected one.
    qsizetype GetRoom() const;

    const qsizetype limit;
};
