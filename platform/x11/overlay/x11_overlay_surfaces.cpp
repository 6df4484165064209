#include "platform/x11/overlay/x11_overlay_surfaces.h"

#include <xcb/shape.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "platform/x11/overlay/overlay_shape.h"

namespace pintle::overlay {
namespace {

constexpr std::uint8_t kBlendingDepth = 32;
/// Window sides of the protocol are 16 bits and never 0.
constexpr double kLargestSide = 32767;

std::uint16_t sideOf(double length) {
    return static_cast<std::uint16_t>(std::clamp(length, 1.0, kLargestSide));
}

/// The pixel column or row of an edge. Halves go to the lower one, which is where a hotspot rounded to
/// nearest puts a registered cursor.
std::int32_t pixelOf(double edge) { return static_cast<std::int32_t>(std::ceil(edge - 0.5)); }

xcb_visualid_t blendingVisual(const xcb_screen_t& screen) {
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
        if (depth.data->depth != kBlendingDepth) continue;
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0;
             xcb_visualtype_next(&visual))
            if (visual.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR) return visual.data->visual_id;
    }
    return 0;
}

std::vector<std::uint8_t> serverPixels(const Bitmap& image, bool mostSignificantFirst) {
    std::vector<std::uint8_t> out(image.bytes().size());
    const auto in = image.bytes();
    for (std::size_t i = 0; i < in.size(); i += 4) {
        const std::array<std::uint8_t, 4> bgra = {in[i + 2], in[i + 1], in[i], in[i + 3]};
        for (std::size_t k = 0; k < 4; ++k) out[i + k] = bgra[mostSignificantFirst ? 3 - k : k];
    }
    return out;
}

class Surface : public OverlaySurface {
  public:
    Surface(OverlayConnection& connection, X11Displays& displays, xcb_window_t window,
            xcb_gcontext_t graphics, std::uint8_t depth, Size size)
        : connection_(connection),
          displays_(displays),
          window_(window),
          graphics_(graphics),
          depth_(depth),
          size_(size) {
        compositor_ = connection_.compositorChanged().observe([this] {
            applyShape();
            connection_.flush();
        });
    }
    ~Surface() override {
        connection_.removeOwnWindow(window_);
        xcb_free_gc(connection_.get(), graphics_);
        xcb_destroy_window(connection_.get(), window_);
        connection_.flush();
    }

    // No window manager takes an override-redirect window off the screen.
    bool isVisible() const override { return true; }

    void setSize(Size size) override {
        if (size == size_) return;
        size_ = size;
        const std::array<std::uint32_t, 2> sides = {sideOf(size.width), sideOf(size.height)};
        xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                             sides.data());
        place();
    }

    void setImage(const std::optional<Bitmap>& image) override {
        if (image_ == image) return;
        image_ = image;
        auto* const c = connection_.get();
        if (image_) {
            const xcb_pixmap_t pixmap = xcb_generate_id(c);
            const auto width = static_cast<std::uint16_t>(image_->width());
            const auto height = static_cast<std::uint16_t>(image_->height());
            xcb_create_pixmap(c, depth_, pixmap, window_, width, height);
            const bool swapped = xcb_get_setup(c)->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST;
            const auto pixels = serverPixels(*image_, swapped);
            xcb_put_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, graphics_, width, height, 0, 0, 0, depth_,
                          static_cast<std::uint32_t>(pixels.size()), pixels.data());
            xcb_change_window_attributes(c, window_, XCB_CW_BACK_PIXMAP, &pixmap);
            xcb_free_pixmap(c, pixmap);
            xcb_clear_area(c, 0, window_, 0, 0, 0, 0);
        }
        applyShape();
        applyVisibility();
    }

    void setOrigin(Point origin) override {
        origin_ = origin;
        place();
    }

    void setAlpha(double alpha) override {
        visible_ = alpha > 0;
        applyVisibility();
    }

    void orderFront() override { raised_ = 0; }

  private:
    void place() {
        const std::int32_t x = displays_.originX() + pixelOf(origin_.x);
        const std::int32_t y = pixelOf(displays_.originBottom() - (origin_.y + size_.height));
        const bool raise = raised_ != connection_.restackings();
        if (x == x_ && y == y_ && !raise) return;
        x_ = x;
        y_ = y;
        raised_ = connection_.restackings();
        const std::array<std::uint32_t, 3> values = {static_cast<std::uint32_t>(x),
                                                     static_cast<std::uint32_t>(y), XCB_STACK_MODE_ABOVE};
        xcb_configure_window(connection_.get(), window_,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_STACK_MODE,
                             values.data());
    }

    void applyShape() {
        auto* const c = connection_.get();
        const bool blends = connection_.hasCompositor() && depth_ == kBlendingDepth;
        if (blends || !image_) {
            xcb_shape_mask(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0, XCB_PIXMAP_NONE);
        } else {
            const auto shape = opaqueShape(*image_);
            xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
                                 window_, 0, 0, static_cast<std::uint32_t>(shape.size()),
                                 reinterpret_cast<const xcb_rectangle_t*>(shape.data()));
        }
    }

    void applyVisibility() {
        const bool map = visible_ && image_;
        if (map == mapped_) return;
        mapped_ = map;
        if (map)
            xcb_map_window(connection_.get(), window_);
        else
            xcb_unmap_window(connection_.get(), window_);
    }

    OverlayConnection& connection_;
    X11Displays& displays_;
    xcb_window_t window_;
    xcb_gcontext_t graphics_;
    std::uint8_t depth_;
    Size size_;
    std::optional<Bitmap> image_;
    Point origin_;
    std::int32_t x_ = INT32_MIN;
    std::int32_t y_ = INT32_MIN;
    bool visible_ = false;
    bool mapped_ = false;
    std::uint64_t raised_ = 0;
    Subscription compositor_;
};

static_assert(sizeof(ShapeRectangle) == sizeof(xcb_rectangle_t));

}  // namespace

X11OverlaySurfaces::X11OverlaySurfaces(OverlayConnection& connection, X11Displays& displays)
    : connection_(connection), displays_(displays) {
    const xcb_screen_t& screen = connection.x().screen();
    visual_ = blendingVisual(screen);
    depth_ = kBlendingDepth;
    if (visual_ == 0) {
        visual_ = screen.root_visual;
        depth_ = screen.root_depth;
    }
    colormap_ = xcb_generate_id(connection.get());
    xcb_create_colormap(connection.get(), XCB_COLORMAP_ALLOC_NONE, colormap_, screen.root, visual_);
}

X11OverlaySurfaces::~X11OverlaySurfaces() { xcb_free_colormap(connection_.get(), colormap_); }

std::unique_ptr<OverlaySurface> X11OverlaySurfaces::create(DisplayId, Size size) {
    if (connection_.isBroken()) return nullptr;
    auto* const c = connection_.get();
    const xcb_window_t window = xcb_generate_id(c);
    // Border and background have to be named where the depth differs from the parent's.
    const std::uint32_t mask =
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP;
    const std::array<std::uint32_t, 4> values = {0, 0, 1, colormap_};
    connection_.addOwnWindow(window);
    xcb_create_window(c, depth_, window, connection_.x().root(), -100, -100, sideOf(size.width),
                      sideOf(size.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual_, mask, values.data());
    // Pointers being dragged are the one kind of window that compositors give neither shadow nor effect.
    const xcb_atom_t kind = connection_.x().atom("_NET_WM_WINDOW_TYPE_DND");
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, connection_.x().atom("_NET_WM_WINDOW_TYPE"),
                        XCB_ATOM_ATOM, 32, 1, &kind);
    xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 0,
                         nullptr);
    const xcb_gcontext_t graphics = xcb_generate_id(c);
    const xcb_void_cookie_t made = xcb_create_gc_checked(c, graphics, window, 0, nullptr);
    if (connection_.x().firstError({made}) != 0) {
        connection_.removeOwnWindow(window);
        xcb_destroy_window(c, window);
        return nullptr;
    }
    return std::make_unique<Surface>(connection_, displays_, window, graphics, depth_, size);
}

}  // namespace pintle::overlay
