#pragma once

#include <memory>

#include "shell/dialogs/DlgStampImpl.h"

class CImage;
class QLabel;
class QLineEdit;

// Chooses the watermark of a gallery's pictures, for each size class.
class CDlgImageWatermark final : public CStampRecordsDialog<CImageStampParams> {
    Q_OBJECT

public:
    CDlgImageWatermark(Stamps& galleryStamps, QWidget* parent);
    ~CDlgImageWatermark() override;

    // What "Change..." does with the file that was chosen: takes it, or says that it is no picture.
    void ChooseFile(const QString& path);

private:
    void ClearStamp() override;
    bool IsEmpty() const override { return imagePath.isEmpty(); }
    CImageStampParams ReadControls() const override;
    void ShowControls(const CImageStampParams& params) override;
    void ApplyPreview(CImageEffectSource& source) override;
    void UpdateControlsState() override;
    QWidget* MakeStampControls() override;

    void OnChange();
    void SetPath(const QString& path);

    QString imagePath;
    std::unique_ptr<CImage> scaledImage; // of imagePath, in the size of the sample; null or empty: to be made

    QLineEdit* file;
    QLabel* problem;
    QSpinBox* transparency;
    QPushButton* remove = nullptr;
};
