#include "shell/dialogs/DlgAbout.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/ProgramIdentity.h"
#include "resources/StringTable.h"
#include "shell/look/Icons.h"

namespace {

QLabel* MakeText(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * 60);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel* MakeName(QWidget* parent)
{
    QLabel* const name = MakeText(Text(StringId::ProgramName), parent);
    QFont font = name->font();
    font.setPointSizeF(font.pointSizeF() * 2);
    font.setWeight(QFont::DemiBold);
    name->setFont(font);
    name->setObjectName(QStringLiteral("name"));
    return name;
}

} // namespace

CDlgAbout::CDlgAbout(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("about"));
    setWindowTitle(Text(StringId::AboutTitle));

    auto* icon = new QLabel(this);
    icon->setPixmap(LoadProgramIcon().pixmap(QSize(128, 128), devicePixelRatioF()));
    icon->setAccessibleName(Text(StringId::ProgramName));

    QLabel* const version = MakeText(Text(StringId::AboutVersion, GetProgramVersion()), this);
    version->setObjectName(QStringLiteral("version"));
    version->setForegroundRole(QPalette::PlaceholderText);

    QLabel* const madeWith = MakeText(Text(StringId::AboutMadeWith, qVersion()), this);
    madeWith->setForegroundRole(QPalette::PlaceholderText);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(4);
    texts->addWidget(MakeName(this));
    texts->addWidget(version);
    texts->addSpacing(10);
    texts->addWidget(MakeText(Text(StringId::AboutText), this));
    texts->addSpacing(10);
    texts->addWidget(madeWith);
    texts->addStretch();

    auto* head = new QHBoxLayout;
    head->setSpacing(24);
    head->addWidget(icon, 0, Qt::AlignTop);
    head->addLayout(texts, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName(QStringLiteral("close"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(24, 24, 24, 16);
    all->setSpacing(16);
    all->addLayout(head);
    all->addWidget(buttons);
    all->setSizeConstraint(QLayout::SetFixedSize);
}
