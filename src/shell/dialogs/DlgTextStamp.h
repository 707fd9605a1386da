#pragma once

#include <array>

#include <QColor>

#include "document/galleries/Gallery.h"
#include "shell/dialogs/DlgStampImpl.h"
#include "shell/dialogs/StampFont.h"

class QCheckBox;
class QLabel;
class QLineEdit;

// Chooses the signature of a gallery's pictures, for each size class. The gallery's records are borrowed,
// must outlive the dialog, and change on OK alone.
class CDlgTextStamp final : public CDlgStampImpl {
    Q_OBJECT

public:
    using Stamps = std::array<CTextStampParams, CGallery::StampCount>;

    CDlgTextStamp(Stamps& galleryStamps, QWidget* parent);

private:
    void ClearStamp() override;
    bool IsEmpty() const override;
    void StoreControls(int index) override;
    void LoadControls(int index) override;
    void ApplyPreview(CImageEffectSource& source) override;
    void UpdateControlsState() override;
    void CommitStamps() override { galleryStamps = stamps; }
    QWidget* MakeStampControls() override;

    void OnFont();
    void OnColour();
    void OnAutomaticColour(bool isAutomatic);
    void SetColour(uint32_t newColor);
    CTextStampParams ReadControls() const;

    Stamps& galleryStamps;
    Stamps stamps;
    LogFont font;
    uint32_t color = 0;

    QLineEdit* text;
    QLabel* fontName;
    QPushButton* colourButton = nullptr;
    QCheckBox* automaticColour;
    QPushButton* remove = nullptr;
};
