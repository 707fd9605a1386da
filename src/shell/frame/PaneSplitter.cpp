#include "shell/frame/PaneSplitter.h"

#include <algorithm>

namespace {

constexpr int MinimumLength = 80; // of a pane, in pixels

} // namespace

CPaneSplitter::CPaneSplitter(Qt::Orientation orientation, QWidget* parent) : QSplitter(orientation, parent)
{
    setChildrenCollapsible(false);
    connect(this, &QSplitter::splitterMoved, this, [this] {
        movedByHand = true;
        OnMovedByHand();
    });
}

int CPaneSplitter::GetBarPosition() const
{
    return sizes().value(0);
}

QSize CPaneSplitter::minimumSizeHint() const
{
    return QSize(2 * MinimumLength, 2 * MinimumLength);
}

void CPaneSplitter::ApplyPlace()
{
    const int length = GetLength();
    const int highest = std::max(length - MinimumLength - handleWidth(), MinimumLength);
    const int place = std::clamp(PlaceBar(length), MinimumLength, highest);
    setSizes({place, std::max(length - place - handleWidth(), 0)});
}

void CPaneSplitter::resizeEvent(QResizeEvent* event)
{
    QSplitter::resizeEvent(event);
    ApplyPlace();
}

CMainSplitter::CMainSplitter(QWidget* parent) : CPaneSplitter(Qt::Horizontal, parent) {}

void CMainSplitter::RestoreShare(double formerShare)
{
    if (formerShare > 0 && formerShare < 1) {
        share = formerShare;
        SetMovedByHand();
        ApplyPlace();
    }
}

int CMainSplitter::PlaceBar(int length) const
{
    return WasMovedByHand() ? qRound(share * length) : length * 75 / 100;
}

void CMainSplitter::OnMovedByHand()
{
    share = static_cast<double>(GetBarPosition()) / std::max(GetLength(), 1);
}

CSideSplitter::CSideSplitter(QWidget* parent) : CPaneSplitter(Qt::Vertical, parent) {}

void CSideSplitter::RestorePosition(int formerPosition)
{
    if (formerPosition > 0) {
        position = formerPosition;
        SetMovedByHand();
        ApplyPlace();
    }
}

int CSideSplitter::PlaceBar(int length) const
{
    if (WasMovedByHand()) {
        return position;
    }
    // H - (W - W * 75 / 100) in the frame's client size: what stands right of the main bar's position, its
    // width included.
    const auto* main = qobject_cast<const QSplitter*>(parentWidget());
    const int barWidth = main ? main->handleWidth() : 0;
    return length - (width() + barWidth);
}

void CSideSplitter::OnMovedByHand()
{
    position = GetBarPosition();
}
