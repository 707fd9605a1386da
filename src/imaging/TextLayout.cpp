#include "imaging/TextLayout.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>

#include <cairo.h>
#include <pango/pangocairo.h>

#include "common/Text.h"

namespace {

// An image that is drawn on has the resolution of a screen, by convention 96 dots per inch: 12 points are 16
// pixels. Sizes in stored signatures are meant so.
constexpr double dotsPerInch = 96;
// Beyond any picture, but such that Pango's numbers hold it.
constexpr int32_t largestPoints = 5000;
constexpr int largestWidth = 1'000'000;
constexpr int largestSurface = 32767;

struct Release {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

template <class Type>
using Owned = std::unique_ptr<Type, Release>;

void DropMessage(const char*, GLogLevelFlags, const char*, void*) {}

// A warning about a missing font is of no use to who publishes a gallery.
void SilencePango()
{
    static std::once_flag once;
    std::call_once(once, [] {
        const auto levels =
            static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL | G_LOG_FLAG_RECURSION);
        g_log_set_handler("Pango", levels, DropMessage, nullptr);
    });
}

// Unhinted grey edges: letters look the same on every screen, and a measure is exact for what is drawn.
Owned<PangoContext> MakeContext()
{
    SilencePango();
    // The default map is one of the calling thread's own.
    Owned<PangoContext> context(pango_font_map_create_context(pango_cairo_font_map_get_default()));
    pango_cairo_context_set_resolution(context.get(), dotsPerInch);
    const Owned<cairo_font_options_t> options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context.get(), options.get());
    return context;
}

Owned<PangoFontDescription> MakeFont(const CanvasText& text)
{
    Owned<PangoFontDescription> font(pango_font_description_new());
    const std::string families = Narrow(text.family + QStringLiteral(",sans-serif"));
    pango_font_description_set_family(font.get(), families.c_str());
    pango_font_description_set_size(font.get(), std::min(text.points, largestPoints) * PANGO_SCALE);
    pango_font_description_set_weight(font.get(), text.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_style(font.get(), text.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    return font;
}

void SetLines(PangoLayout* layout, const CanvasText& text)
{
    PangoAttrList* const attributes = pango_attr_list_new();
    if (text.underline) {
        pango_attr_list_insert(attributes, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
    }
    if (text.strikeout) {
        pango_attr_list_insert(attributes, pango_attr_strikethrough_new(TRUE));
    }
    pango_layout_set_attributes(layout, attributes);
    pango_attr_list_unref(attributes);
}

// width: in pixels. The text has a font size of 1 or more.
Owned<PangoLayout> MakeLayout(const CanvasText& text, int width)
{
    const Owned<PangoContext> context = MakeContext();
    Owned<PangoLayout> layout(pango_layout_new(context.get()));
    const Owned<PangoFontDescription> font = MakeFont(text);
    pango_layout_set_font_description(layout.get(), font.get());
    SetLines(layout.get(), text);
    pango_layout_set_alignment(layout.get(), PANGO_ALIGN_CENTER);
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    pango_layout_set_width(layout.get(), std::clamp(width, 1, largestWidth) * PANGO_SCALE);
    const std::string narrow = Narrow(QString(text.text).replace(QChar(0), QLatin1Char(' ')));
    pango_layout_set_text(layout.get(), narrow.data(), static_cast<int>(narrow.size()));
    return layout;
}

CPixels WithoutPremultiplication(cairo_surface_t* surface, QSize size)
{
    cairo_surface_flush(surface);
    const unsigned char* const data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    std::vector<uint8_t> bytes;
    bytes.reserve(static_cast<size_t>(size.width()) * size.height() * 4);
    for (int y = 0; y < size.height(); ++y) {
        const auto* row = reinterpret_cast<const uint32_t*>(data + static_cast<ptrdiff_t>(y) * stride);
        for (int x = 0; x < size.width(); ++x) {
            const uint32_t alpha = row[x] >> 24;
            for (const int shift : {16, 8, 0}) {
                const uint32_t premultiplied = row[x] >> shift & 0xff;
                bytes.push_back(
                    static_cast<uint8_t>(alpha == 0 ? 0 : (premultiplied * 255 + alpha / 2) / alpha));
            }
            bytes.push_back(static_cast<uint8_t>(alpha));
        }
    }
    return MakePixels(size, 4, std::move(bytes));
}

} // namespace

QSize MeasureLayout(const CanvasText& text, int width)
{
    if (text.points < 1) {
        return {0, 0};
    }
    const Owned<PangoLayout> layout = MakeLayout(text, width);
    int textWidth = 0;
    int textHeight = 0;
    pango_layout_get_size(layout.get(), &textWidth, &textHeight);
    return {textWidth / PANGO_SCALE, textHeight / PANGO_SCALE};
}

CPixels RenderLayout(const CanvasText& text, const LayoutPart& part, const CanvasColour& colour)
{
    const QSize size = part.area.size().boundedTo(QSize(largestSurface, largestSurface));
    const Owned<cairo_surface_t> surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.width(), size.height()));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS || text.points < 1) {
        return MakePixels(QSize(0, 0), 4, {});
    }
    const Owned<cairo_t> context(cairo_create(surface.get()));
    cairo_set_source_rgb(context.get(), colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0);
    cairo_move_to(context.get(), -part.area.x(), -part.area.y());
    const Owned<PangoLayout> layout = MakeLayout(text, part.width);
    pango_cairo_show_layout(context.get(), layout.get());
    return WithoutPremultiplication(surface.get(), size);
}
