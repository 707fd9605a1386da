#include "shell/dialogs/DlgTextStamp.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QFontDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>

#include "effects/ImageEffectTextStamp.h"
#include "resources/StringTable.h"
#include "shell/dialogs/StampValues.h"
#include "shell/look/DialogParts.h"

namespace {

// What a person gets who turns the automatic colour off: as good as black.
constexpr uint32_t FirstColour = 0x000001;

QIcon SwatchOf(uint32_t colour)
{
    QPixmap swatch(16, 16);
    swatch.fill(ToQColor(colour));
    return swatch;
}

} // namespace

CDlgTextStamp::CDlgTextStamp(Stamps& galleryStamps, QWidget* parent)
    : CStampRecordsDialog(galleryStamps, parent),
      text(new QLineEdit(this)),
      fontName(new QLabel(this)),
      automaticColour(new QCheckBox(Text(StringId::AutomaticColour), this))
{
    setWindowTitle(Text(StringId::SignatureTitle));
    InitControls();
    text->setFocus();
}

QWidget* CDlgTextStamp::MakeStampControls()
{
    const QString textLabel = Text(StringId::SignatureTextLabel);
    NameControl(*text, "text", textLabel);
    NameControl(*fontName, "fontName", Text(StringId::FontLabel));
    NameControl(*automaticColour, "automaticColour", automaticColour->text());
    text->setMinimumWidth(220);
    QPushButton* fontButton = MakeButton(Text(StringId::FontButton), "font", this);
    colourButton = MakeButton(Text(StringId::ColourButton), "colour", this);
    remove = MakeRemoveButton();
    connect(text, &QLineEdit::textChanged, this, &CDlgTextStamp::OnControlChanged);
    connect(fontButton, &QPushButton::clicked, this, &CDlgTextStamp::OnFont);
    connect(colourButton, &QPushButton::clicked, this, &CDlgTextStamp::OnColour);
    connect(automaticColour, &QCheckBox::clicked, this, &CDlgTextStamp::OnAutomaticColour);

    auto* group = new QGroupBox(Text(StringId::SignatureGroup));
    auto* form = new QFormLayout(group);
    auto* textRow = new QHBoxLayout;
    textRow->addWidget(text);
    textRow->addWidget(remove);
    form->addRow(MakeLabel(textLabel, *text), textRow);
    auto* fontRow = new QHBoxLayout;
    fontRow->addWidget(fontButton);
    fontRow->addWidget(fontName, 1);
    form->addRow(Text(StringId::FontLabel), fontRow);
    auto* colourRow = new QHBoxLayout;
    colourRow->addWidget(colourButton);
    colourRow->addWidget(automaticColour, 1);
    form->addRow(Text(StringId::ColourLabel), colourRow);
    return group;
}

void CDlgTextStamp::OnFont()
{
    QFontDialog dialog(ToQFont(font), this);
    dialog.setWindowTitle(Text(StringId::ChooseFont));
    // It shows what is installed: of a font without italics, say, another style.
    const QFont shown = dialog.currentFont();
    if (dialog.exec() == QDialog::Accepted && dialog.selectedFont() != shown) {
        font = FromQFont(dialog.selectedFont());
        OnControlChanged();
    }
}

void CDlgTextStamp::OnColour()
{
    const QColor chosen = QColorDialog::getColor(ToQColor(colour), this, Text(StringId::ChooseColour));
    if (chosen.isValid()) {
        SetColour(FromQColor(chosen));
    }
}

void CDlgTextStamp::OnAutomaticColour(bool isAutomatic)
{
    SetColour(isAutomatic ? 0 : FirstColour);
}

void CDlgTextStamp::SetColour(uint32_t newColour)
{
    colour = newColour;
    OnControlChanged();
}

void CDlgTextStamp::ClearStamp()
{
    text->clear();
}

bool CDlgTextStamp::IsEmpty() const
{
    return text->text().isEmpty();
}

CTextStampParams CDlgTextStamp::ReadControls() const
{
    CTextStampParams params;
    StorePlace(params);
    StoreLogFont(font, params);
    params.text = text->text();
    params.color = colour;
    return params;
}

void CDlgTextStamp::ShowControls(const CTextStampParams& params)
{
    font = LogFontOf(params);
    colour = params.color;
    text->setText(params.text);
}

void CDlgTextStamp::ApplyPreview(CImageEffectSource& source)
{
    CImageEffectTextStamp(ReadControls()).Apply(source);
}

void CDlgTextStamp::UpdateControlsState()
{
    remove->setEnabled(!IsEmpty());
    fontName->setText(Text(StringId::FontWithSize, font.faceName, std::abs(font.height)));
    automaticColour->setChecked(colour == 0);
    colourButton->setIcon(colour == 0 ? QIcon() : SwatchOf(colour));
}
