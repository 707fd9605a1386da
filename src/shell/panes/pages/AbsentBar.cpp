#include "shell/panes/pages/AbsentBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

CAbsentBar::CAbsentBar(const Actions& actions, QWidget* parent) : QFrame(parent), text(new QLabel(this))
{
    setObjectName(QStringLiteral("AbsentBar"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    text->setForegroundRole(QPalette::ToolTipText);
    text->setTextFormat(Qt::PlainText);
    text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    text->setToolTip(Text(StringId::PicturesAreNotThereTip));
    QPushButton* const find = MakeButton(Text(StringId::FindMissingFolder), "findAbsent", this);
    find->setToolTip(Text(StringId::FindMissingTip));
    connect(find, &QPushButton::clicked, this, [actions] { actions.find(); });
    QPushButton* const show = MakeButton(Text(StringId::ShowMissingPicture), "showAbsent", this);
    show->setToolTip(Text(StringId::ShowMissingPictureTip));
    connect(show, &QPushButton::clicked, this, [actions] { actions.show(); });
    auto* const line = new QHBoxLayout(this);
    line->setContentsMargins(8, 3, 4, 3);
    line->addWidget(text, 1);
    line->addWidget(find);
    line->addWidget(show);
    hide();
}

void CAbsentBar::SetCount(int count)
{
    text->setText(count == 1 ? Text(StringId::PictureIsNotThere)
                             : Text(StringId::PicturesAreNotThere, count));
    setVisible(count > 0);
}
