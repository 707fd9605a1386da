#pragma once

#include <functional>

#include <QLabel>

class CImageEffectSource;

// Shows what a stamp makes of an empty picture. Owned by its dialog.
class CStampSample final : public QLabel {
    Q_OBJECT

public:
    explicit CStampSample(QWidget* parent);

    // Applies the stamp to an empty picture a pixel smaller than this control, and shows it on grey.
    void ShowStamp(const std::function<void(CImageEffectSource&)>& applyStamp);
    void ShowNothing() { clear(); }
};
