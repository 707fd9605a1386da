#pragma once

#include <QWidget>

#include "document/GalleryProjectConsumer.h"

// A view that shows nothing.
class CEmptyView final : public QWidget, public CGalleryProjectConsumer {
public:
    using QWidget::QWidget;
    void UpdateView(UpdateHint, CGalleryProject&) override {}
};
