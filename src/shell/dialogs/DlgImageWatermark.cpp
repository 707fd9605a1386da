#include "shell/dialogs/DlgImageWatermark.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>

#include "effects/ImageEffectGraphicsStamp.h"
#include "effects/ImageEffectResize.h"
#include "effects/ImageEffectSource.h"
#include "imaging/Image.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int PreviewPercent = 60; // of the sample, at most

} // namespace

CDlgImageWatermark::CDlgImageWatermark(Stamps& galleryStamps, QWidget* parent)
    : CStampRecordsDialog(galleryStamps, parent),
      file(new QLineEdit(this)),
      problem(new QLabel(this)),
      transparency(new QSpinBox(this))
{
    setWindowTitle(Text(StringId::WatermarkTitle));
    InitControls();
}

CDlgImageWatermark::~CDlgImageWatermark() = default;

QWidget* CDlgImageWatermark::MakeStampControls()
{
    const QString fileLabel = QStringLiteral("&File:");
    const QString transparencyLabel = QStringLiteral("&Transparency:");
    NameControl(*file, "file", fileLabel);
    NameControl(*transparency, "transparency", transparencyLabel);
    NameControl(*problem, "problem", QStringLiteral("Problem"));
    file->setReadOnly(true);
    file->setMinimumWidth(220);
    problem->setWordWrap(true);
    transparency->setRange(0, 100);
    transparency->setSuffix(QStringLiteral(" %"));
    connect(transparency, &QSpinBox::valueChanged, this, &CDlgImageWatermark::OnControlChanged);
    QPushButton* change = MakeButton(QStringLiteral("&Change..."), "change", this);
    connect(change, &QPushButton::clicked, this, &CDlgImageWatermark::OnChange);
    remove = MakeRemoveButton();

    auto* group = new QGroupBox(QStringLiteral("Picture"));
    auto* form = new QFormLayout(group);
    AddRow(*form, fileLabel, *file);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(change);
    buttons->addWidget(remove);
    buttons->addStretch();
    form->addRow(QString(), buttons);
    form->addRow(problem);
    AddRow(*form, transparencyLabel, *transparency);
    return group;
}

void CDlgImageWatermark::OnChange()
{
    const QString chosen =
        QFileDialog::getOpenFileName(this, Text(StringId::ChooseWatermark), QFileInfo(imagePath).path(),
                                     Text(StringId::PictureFilesFilter));
    if (!chosen.isEmpty()) {
        ChooseFile(QDir::toNativeSeparators(chosen));
    }
}

void CDlgImageWatermark::ChooseFile(const QString& path)
{
    const CImage image = CImage::FromFile(path);
    if (image.GetSize().isEmpty()) {
        QMessageBox::warning(this, windowTitle(),
                             Text(StringId::WatermarkNotReadable, path) + QLatin1Char('\n') +
                                 image.GetCondition().reason + QLatin1Char('\n') +
                                 Text(StringId::ChooseAnotherWatermark));
        return;
    }
    SetPath(path);
    OnControlChanged();
}

void CDlgImageWatermark::SetPath(const QString& path)
{
    imagePath = path;
    scaledImage.reset();
    file->setText(path);
    file->setToolTip(path);
}

void CDlgImageWatermark::ClearStamp()
{
    SetPath(QString());
}

CImageStampParams CDlgImageWatermark::ReadControls() const
{
    CImageStampParams params;
    StorePlace(params);
    params.file = imagePath;
    params.transparency = transparency->value();
    return params;
}

void CDlgImageWatermark::ShowControls(const CImageStampParams& params)
{
    SetPath(params.file);
    transparency->setValue(params.transparency);
}

void CDlgImageWatermark::ApplyPreview(CImageEffectSource& source)
{
    if (!scaledImage || scaledImage->GetSize().isEmpty()) {
        const QSize size = source.GetImage().GetSize();
        CImageEffectSource stampSource(imagePath);
        // So the sample shows more of a large watermark than a picture would, and not in the same proportion.
        CImageEffectResize({size.width() * PreviewPercent / 100, size.height() * PreviewPercent / 100},
                           {.shrinkOnly = true, .crop = false})
            .Apply(stampSource);
        // Held as pixels, so that the file is decoded once for all changes of the other controls.
        const CImage scaled = stampSource.DetachImage();
        scaledImage = std::make_unique<CImage>(CImage::FromRgba(scaled.GetSize(), scaled.GetRgba()));
    }
    CImageStampParams params = ReadControls();
    params.file.clear();
    CImageEffectGraphicsStamp stamp(params);
    stamp.SetImage(*scaledImage);
    stamp.Apply(source);
}

void CDlgImageWatermark::UpdateControlsState()
{
    remove->setEnabled(!IsEmpty());
    const bool isReadable = IsEmpty() || !CImage::FromFile(imagePath).GetSize().isEmpty();
    problem->setText(isReadable ? QString() : Text(StringId::WatermarkNotReadable, imagePath));
    problem->setVisible(!isReadable);
}
