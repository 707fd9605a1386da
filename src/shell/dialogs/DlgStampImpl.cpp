#include "shell/dialogs/DlgStampImpl.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/dialogs/StampSample.h"
#include "shell/dialogs/StampValues.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int MaxMargin = 9999; // pixels

} // namespace

CDlgStampImpl::CDlgStampImpl(QWidget* parent)
    : QDialog(parent),
      sizeClass(new QComboBox(this)),
      positions(new QButtonGroup(this)),
      margin(new QSpinBox(this)),
      sample(new CStampSample(this))
{
    for (const StringId id : {StringId::SmallPictures, StringId::MiddlePictures, StringId::LargePictures}) {
        sizeClass->addItem(Text(id));
    }
    margin->setRange(0, MaxMargin);
    margin->setSuffix(QStringLiteral(" px"));
}

void CDlgStampImpl::InitControls()
{
    const QString classLabel = QStringLiteral("Si&ze of pictures:");
    NameControl(*sizeClass, "sizeClass", classLabel);

    auto* classRow = new QHBoxLayout;
    classRow->addWidget(MakeLabel(classLabel, *sizeClass));
    classRow->addWidget(sizeClass, 1);

    auto* left = new QVBoxLayout;
    left->addWidget(MakeStampControls());
    left->addWidget(MakePlaceControls());
    left->addStretch();
    auto* right = new QVBoxLayout;
    right->addWidget(new QLabel(QStringLiteral("Sample:")));
    right->addWidget(sample);
    right->addStretch();

    auto* columns = new QHBoxLayout;
    columns->addLayout(left, 1);
    columns->addSpacing(12);
    columns->addLayout(right);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(classRow);
    layout->addLayout(columns);
    AddOkAndCancel(*this, *layout);

    connect(sizeClass, &QComboBox::currentIndexChanged, this, &CDlgStampImpl::OnClassChanged);
    connect(positions, &QButtonGroup::idToggled, this, &CDlgStampImpl::OnControlChanged);
    connect(margin, &QSpinBox::valueChanged, this, &CDlgStampImpl::OnControlChanged);
    ShowClass(0);
}

QWidget* CDlgStampImpl::MakePlaceControls()
{
    const QString marginLabel = QStringLiteral("&Margin:");
    NameControl(*margin, "margin", marginLabel);
    auto* group = new QGroupBox(QStringLiteral("Position"));
    auto* layout = new QHBoxLayout(group);
    layout->addWidget(MakePositionGrid());
    layout->addSpacing(16);
    layout->addWidget(MakeLabel(marginLabel, *margin));
    layout->addWidget(margin);
    layout->addStretch();
    return group;
}

QWidget* CDlgStampImpl::MakePositionGrid()
{
    auto* frame = new QFrame(this);
    frame->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    auto* grid = new QGridLayout(frame);
    grid->setHorizontalSpacing(18);
    grid->setVerticalSpacing(10);
    for (size_t i = 0; i < StampPlaces.size(); ++i) {
        const StampPlace& place = StampPlaces[i];
        auto* button = new QRadioButton(frame);
        NameControl(*button, place.objectName, QString::fromLatin1(place.name));
        button->setToolTip(button->accessibleName());
        positions->addButton(button, place.position);
        const int cell = static_cast<int>(i);
        grid->addWidget(button, cell / StampGridWidth, cell % StampGridWidth);
    }
    return frame;
}

QPushButton* CDlgStampImpl::MakeRemoveButton()
{
    QPushButton* button = MakeButton(QStringLiteral("&Remove"), "remove", this);
    connect(button, &QPushButton::clicked, this, [this] {
        ClearStamp();
        OnControlChanged();
    });
    return button;
}

void CDlgStampImpl::StorePlace(CStampParams& params) const
{
    params.position = positions->checkedId();
    params.margin = margin->value();
}

void CDlgStampImpl::LoadPlace(const CStampParams& params)
{
    positions->button(CanonicalPosition(params.position))->setChecked(true);
    margin->setValue(params.margin);
}

void CDlgStampImpl::OnClassChanged(int index)
{
    StoreControls(shownClass);
    ShowClass(index);
}

void CDlgStampImpl::ShowClass(int index)
{
    shownClass = index;
    loading = true;
    LoadControls(index);
    loading = false;
    OnControlChanged();
}

void CDlgStampImpl::OnControlChanged()
{
    if (!loading) {
        UpdateControlsState();
        UpdateSample();
    }
}

void CDlgStampImpl::UpdateSample()
{
    if (IsEmpty()) {
        sample->ShowNothing();
    } else {
        sample->ShowStamp([this](CImageEffectSource& source) { ApplyPreview(source); });
    }
}

void CDlgStampImpl::accept()
{
    StoreControls(shownClass);
    CommitStamps();
    QDialog::accept();
}
