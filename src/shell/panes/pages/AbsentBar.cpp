#include "shell/panes/pages/AbsentBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

CAbsentBar::CAbsentBar(const std::function<void()>& show, QWidget* parent)
    : QFrame(parent), text(new QLabel(this))
{
    setObjectName(QStringLiteral("AbsentBar"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    text->setForegroundRole(QPalette::ToolTipText);
    text->setTextFormat(Qt::PlainText);
    text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    text->setToolTip(Text(StringId::PicturesAreNotThereTip));
    QPushButton* const button = MakeButton(Text(StringId::ShowMissingPicture), "showAbsent", this);
    button->setToolTip(Text(StringId::ShowMissingPictureTip));
    connect(button, &QPushButton::clicked, this, [show] { show(); });
    auto* const line = new QHBoxLayout(this);
    line->setContentsMargins(8, 3, 4, 3);
    line->addWidget(text, 1);
    line->addWidget(button);
    hide();
}

void CAbsentBar::SetCount(int count)
{
    text->setText(count == 1 ? Text(StringId::PictureIsNotThere)
                             : Text(StringId::PicturesAreNotThere, count));
    setVisible(count > 0);
}
