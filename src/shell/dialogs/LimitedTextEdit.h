#pragma once

#include <QPlainTextEdit>

// An edit of several lines that takes a limited number of characters: of a text typed or pasted it keeps as
// much as has room, and what stood there before stays. Tab leaves the edit.
class CLimitedTextEdit final : public QPlainTextEdit {
    Q_OBJECT

public:
    // limit: as LengthWithLineEnds counts.
    explicit CLimitedTextEdit(qsizetype limit, QWidget* parent = nullptr);

private:
    void CutInserted();

    const qsizetype limit;
    int insertedEnd = 0; // of the change that is under way
    int insertedLength = 0;
    bool cutting = false;
};
