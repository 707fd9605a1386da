#pragma once

#include <array>

#include "document/galleries/Gallery.h"
#include "imaging/Image.h"
#include "shell/dialogs/DlgStampImpl.h"

class QLabel;
class QLineEdit;

// Chooses the watermark of a gallery's pictures, for each size class. The gallery's records are borrowed,
// must outlive the dialog, and change on OK alone.
class CDlgImageWatermark final : public CDlgStampImpl {
    Q_OBJECT

public:
    using Stamps = std::array<CImageStampParams, CGallery::StampCount>;

    CDlgImageWatermark(Stamps& galleryStamps, QWidget* parent);

    // What "Change..." does with the file that was chosen: takes it, or says that it is no picture.
    void ChooseFile(const QString& path);

private:
    void ClearStamp() override;
    bool IsEmpty() const override { return imagePath.isEmpty(); }
    void StoreControls(int index) override;
    void LoadControls(int index) override;
    void ApplyPreview(CImageEffectSource& source) override;
    void UpdateControlsState() override;
    void CommitStamps() override { galleryStamps = stamps; }
    QWidget* MakeStampControls() override;

    void OnChange();
    void SetPath(const QString& path);
    CImageStampParams ReadControls() const;

    Stamps& galleryStamps;
    Stamps stamps;
    QString imagePath;
    CImage scaledImage; // of imagePath, in the size of the sample; none if it has to be made

    QLineEdit* file;
    QLabel* problem;
    QSpinBox* transparency;
    QPushButton* remove = nullptr;
};
