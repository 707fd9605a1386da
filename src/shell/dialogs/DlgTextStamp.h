#pragma once

#include "shell/dialogs/DlgStampImpl.h"
#include "shell/dialogs/StampValues.h"

class QCheckBox;
class QLabel;
class QLineEdit;

// Chooses the signature of a gallery's pictures, for each size class.
class CDlgTextStamp final : public CStampRecordsDialog<CTextStampParams> {
    Q_OBJECT

public:
    CDlgTextStamp(Stamps& galleryStamps, QWidget* parent);

private:
    void ClearStamp() override;
    bool IsEmpty() const override;
    CTextStampParams ReadControls() const override;
    void ShowControls(const CTextStampParams& params) override;
    void ApplyPreview(CImageEffectSource& source) override;
    void UpdateControlsState() override;
    QWidget* MakeStampControls() override;

    void OnFont();
    void OnColour();
    void OnAutomaticColour(bool isAutomatic);
    void SetColour(uint32_t newColour);

    LogFont font;
    uint32_t colour = 0;

    QLineEdit* text;
    QLabel* fontName;
    QPushButton* colourButton = nullptr;
    QCheckBox* automaticColour;
    QPushButton* remove = nullptr;
};
