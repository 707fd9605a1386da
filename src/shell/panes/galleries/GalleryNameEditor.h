#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include <QLineEdit>

// The field in which a gallery gets its name, over the lower edge of its cover. Enter takes the name, Escape
// gives up, and going elsewhere takes it. Owned by the view that it lies in; screen's thread.
class CGalleryNameEditor final : public QLineEdit {
public:
    // Not called for a name that is as before or empty.
    using Taker = std::function<void(int32_t gallery, const QString& name)>;

    // page: gets the keyboard afterwards. Borrowed.
    CGalleryNameEditor(QWidget& view, QWidget& page, Taker taker);

    // Begins; what it shows on the screen comes with Place. A name that is being edited is taken.
    void Open(int32_t newGallery, const QString& name);
    // The gallery whose name is asked for.
    std::optional<int32_t> GetGallery() const { return gallery; }

    // In the view: the frame of the cover, and its own lower edge.
    struct CoverPlace {
        int left = 0;
        int width = 0;
        int bottom = 0;
    };
    void Place(const CoverPlace& cover);
    void GiveUp();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void Take();
    void Close();

    QWidget& view;
    QWidget& page;
    const Taker taker;
    std::optional<int32_t> gallery;
    QString former;
};
