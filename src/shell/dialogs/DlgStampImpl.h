#pragma once

#include <array>

#include <QDialog>

#include "effects/StampParams.h"

class CImageEffectSource;
class CStampSample;
class QBoxLayout;
class QButtonGroup;
class QComboBox;
class QPushButton;
class QSpinBox;

// The common part of the dialogs for stamps: size classes, position, margin and a live sample, made by the
// effects that mark the pictures themselves. Works on copies of the gallery's records; a derived class keeps
// them and hands them back on OK alone. Screen's thread.
class CDlgStampImpl : public QDialog {
    Q_OBJECT

public:
    static constexpr size_t ClassCount = 3; // small, middle and large pictures

    void accept() override;

protected:
    explicit CDlgStampImpl(QWidget* parent);

    // Builds the dialog around the controls of MakeStampControls and shows class 0. Called at the end of a
    // derived class's constructor.
    virtual void InitControls();
    // Forgets the picture or the text.
    virtual void ClearStamp() = 0;
    virtual bool IsEmpty() const = 0;
    // Copies the controls into the record of a size class, and the reverse.
    virtual void StoreControls(int index) = 0;
    virtual void LoadControls(int index) = 0;
    // Applies a stamp made from the controls.
    virtual void ApplyPreview(CImageEffectSource& source) = 0;
    virtual void UpdateControlsState() = 0;
    virtual void CommitStamps() = 0;

    // The controls of the derived class's own.
    virtual QWidget* MakeStampControls() = 0;

    void StorePlace(CStampParams& params) const;
    void LoadPlace(const CStampParams& params);
    // To be called at each change of a control. Does nothing while controls are loaded.
    void OnControlChanged();
    // The button that calls ClearStamp.
    QPushButton* MakeRemoveButton();

private:
    void OnClassChanged(int index);
    void ShowClass(int index);
    void UpdateSample();
    QWidget* MakePlaceControls();
    QWidget* MakePositionGrid();

    QComboBox* sizeClass;
    QButtonGroup* positions;
    QSpinBox* margin;
    CStampSample* sample;
    int shownClass = 0;
    bool loading = false;
};

// The records of one kind of stamp, CImageStampParams or CTextStampParams, of which a gallery has one for
// each size class. Those of the gallery are borrowed, must outlive the dialog, and change on OK alone.
template <class Params>
class CStampRecordsDialog : public CDlgStampImpl {
public:
    using Stamps = std::array<Params, ClassCount>;

protected:
    CStampRecordsDialog(Stamps& galleryStamps, QWidget* parent)
        : CDlgStampImpl(parent), galleryStamps(galleryStamps), stamps(galleryStamps)
    {}

    virtual Params ReadControls() const = 0;
    virtual void ShowControls(const Params& params) = 0;

private:
    void StoreControls(int index) final { stamps[static_cast<size_t>(index)] = ReadControls(); }
    void LoadControls(int index) final
    {
        const Params& params = stamps[static_cast<size_t>(index)];
        LoadPlace(params);
        ShowControls(params);
    }
    void CommitStamps() final { galleryStamps = stamps; }

    Stamps& galleryStamps;
    Stamps stamps;
};
