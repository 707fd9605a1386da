#include "shell/dialogs/DlgPictureTexts.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/dialogs/PictureTextsTable.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr QSize ThumbnailBox(72, 54); // logical pixels

enum class Answer { Keep, Discard, GoOn };

Answer AskWhatBecomesOfChanges(QWidget* parent, const QString& title)
{
    QMessageBox box(QMessageBox::Question, title, Text(StringId::KeepChangesQuestion), QMessageBox::NoButton,
                    parent);
    const QAbstractButton* const keep =
        box.addButton(Text(StringId::KeepChangesButton), QMessageBox::AcceptRole);
    const QAbstractButton* const discard =
        box.addButton(Text(StringId::DiscardChangesButton), QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton(Text(StringId::GoOnEditingButton), QMessageBox::RejectRole));
    box.exec();
    return box.clickedButton() == keep      ? Answer::Keep
           : box.clickedButton() == discard ? Answer::Discard
                                            : Answer::GoOn;
}

} // namespace

CDlgPictureTexts::CDlgPictureTexts(std::vector<PictureTexts> pictures, QWidget* parent)
    : QDialog(parent),
      model(std::move(pictures), ThumbnailBox * devicePixelRatioF(), this),
      table(new CPictureTextsTable(model, ThumbnailBox, this)),
      hint(new QLabel(Text(StringId::PictureTextsHint), this)),
      message(new QLabel(this))
{
    setWindowTitle(Text(StringId::PictureTextsTitle));
    const QString label = Text(StringId::PictureTextsLabel);
    NameControl(*table, "pictures", label);
    hint->setObjectName(QStringLiteral("hint"));
    hint->setWordWrap(true);
    message->setObjectName(QStringLiteral("message"));
    message->setWordWrap(true);
    message->hide();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeLabel(label, *table));
    layout->addWidget(table);
    layout->addWidget(message);
    layout->addWidget(hint);
    AddOkAndCancel(*this, *layout);
    resize(940, 580);
    table->setFocus();

    connect(table, &CPictureTextsTable::pasted, this, &CDlgPictureTexts::TellBeyond);
    connect(table, &CPictureTextsTable::finished, this, &CDlgPictureTexts::accept);
}

void CDlgPictureTexts::TellBeyond(int lines)
{
    message->setText(lines == 1 ? Text(StringId::LineDidNotFit) : Text(StringId::LinesDidNotFit, lines));
    // In its place, so that the table stays as it is.
    message->setVisible(lines > 0);
    hint->setVisible(lines == 0);
}

void CDlgPictureTexts::accept()
{
    table->CommitEditing();
    QDialog::accept();
}

void CDlgPictureTexts::reject()
{
    table->CommitEditing();
    const Answer answer =
        GetChanges().empty() ? Answer::Discard : AskWhatBecomesOfChanges(this, windowTitle());
    if (answer == Answer::Keep) {
        QDialog::accept();
    } else if (answer == Answer::Discard) {
        QDialog::reject();
    }
}
