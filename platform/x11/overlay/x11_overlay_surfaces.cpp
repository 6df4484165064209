#include "platform/x11/overlay/x11_overlay_surfaces.h"

#include <xcb/shape.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
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

/// Divided by a density and multiplied with it again, a half is not always a half.
double pixels(double points, double density) {
    constexpr double kSteps = 1024;
    return density == 1 ? points : std::round(points * density * kSteps) / kSteps;
}

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

/// Largest request in bytes, without the head of one that puts an image or a shape.
std::uint32_t largestImagePart(xcb_connection_t* c) {
    constexpr std::uint32_t kHead = 64;
    return xcb_get_maximum_request_length(c) * 4 - kHead;
}

class Surface : public OverlaySurface {
  public:
    Surface(OverlayConnection& connection, X11Displays& displays, const WindowKind& kind, Size size)
        : connection_(connection), displays_(displays), kind_(kind), size_(size) {
        compositor_ = connection_.compositorChanged().observe([this] {
            applyShape();
            connection_.flush();
        });
        reopened_ = connection_.reopened().observe([this] { makeAgain(); });
    }
    ~Surface() override {
        connection_.removeOwnWindow(window_);
        xcb_free_gc(connection_.get(), graphics_);
        xcb_destroy_window(connection_.get(), window_);
        connection_.flush();
    }
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    /// False when the server refuses.
    bool make() {
        auto* const c = connection_.get();
        window_ = xcb_generate_id(c);
        graphics_ = xcb_generate_id(c);
        // Border and background have to be named where the depth differs from the parent's.
        const std::uint32_t mask =
            XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP;
        const std::array<std::uint32_t, 4> values = {0, 0, 1, kind_.colormap};
        connection_.addOwnWindow(window_);
        const auto [width, height] = sides();
        xcb_create_window(c, kind_.depth, window_, connection_.x().root(), -100, -100, width, height, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, kind_.visual, mask, values.data());
        // Pointers being dragged are the one kind of window that compositors give neither shadow nor effect.
        const xcb_atom_t type = connection_.x().atom("_NET_WM_WINDOW_TYPE_DND");
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window_, connection_.x().atom("_NET_WM_WINDOW_TYPE"),
                            XCB_ATOM_ATOM, 32, 1, &type);
        xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window_, 0,
                             0, 0, nullptr);
        const xcb_void_cookie_t made = xcb_create_gc_checked(c, graphics_, window_, 0, nullptr);
        return connection_.x().firstError({made}) == 0;
    }

    // No window manager takes an override-redirect window off the screen.
    bool isVisible() const override { return true; }

    void setSize(Size size) override {
        if (size == size_) return;
        size_ = size;
        applySize();
        place();
    }

    void setImage(const std::optional<Bitmap>& image) override {
        if (image_ == image) return;
        image_ = image;
        // The server would end the connection of whoever sends more than it takes.
        if (image_ && !canBeSent(*image_)) image_.reset();
        applySize();
        sendImage();
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
    /// Those of the image, which was drawn for the density that the points are of.
    std::pair<std::uint16_t, std::uint16_t> sides() const {
        if (image_)
            return {static_cast<std::uint16_t>(image_->width()),
                    static_cast<std::uint16_t>(image_->height())};
        const double density = displays_.pixelsPerPoint();
        return {sideOf(size_.width * density), sideOf(size_.height * density)};
    }

    void applySize() {
        const auto [width, height] = sides();
        const std::array<std::uint32_t, 2> values = {width, height};
        xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                             values.data());
    }

    bool canBeSent(const Bitmap& image) const {
        return image.width() <= kLargestSide && image.height() <= kLargestSide &&
               std::uint64_t{4} * static_cast<std::uint64_t>(image.width()) <=
                   largestImagePart(connection_.get());
    }

    /// In parts of whole rows, each within one request.
    void sendImage() {
        if (!image_) return;
        auto* const c = connection_.get();
        const xcb_pixmap_t pixmap = xcb_generate_id(c);
        const auto width = static_cast<std::uint16_t>(image_->width());
        const auto height = static_cast<std::uint16_t>(image_->height());
        xcb_create_pixmap(c, kind_.depth, pixmap, window_, width, height);
        const bool swapped = xcb_get_setup(c)->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST;
        const auto pixels = serverPixels(*image_, swapped);
        const std::uint32_t rowBytes = std::uint32_t{4} * width;
        const std::uint32_t rowsAtOnce = largestImagePart(c) / rowBytes;
        for (std::uint32_t row = 0; row < height; row += rowsAtOnce) {
            const auto rows = std::min<std::uint32_t>(rowsAtOnce, height - row);
            xcb_put_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, graphics_, width,
                          static_cast<std::uint16_t>(rows), 0, static_cast<std::int16_t>(row), 0, kind_.depth,
                          rowBytes * rows, pixels.data() + std::size_t{row} * rowBytes);
        }
        xcb_change_window_attributes(c, window_, XCB_CW_BACK_PIXMAP, &pixmap);
        xcb_free_pixmap(c, pixmap);
        xcb_clear_area(c, 0, window_, 0, 0, 0, 0);
    }

    void makeAgain() {
        if (!make()) return;
        x_ = y_ = INT32_MIN;
        mapped_ = false;
        sendImage();
        applyShape();
        place();
        applyVisibility();
    }

    void place() {
        const double density = displays_.pixelsPerPoint();
        const std::int32_t x = displays_.originX() + pixelOf(pixels(origin_.x, density));
        const std::int32_t y = pixelOf(displays_.originBottom() - pixels(origin_.y + size_.height, density));
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
        const bool blends = connection_.hasCompositor() && kind_.depth == kBlendingDepth;
        if (blends || !image_) {
            xcb_shape_mask(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0, XCB_PIXMAP_NONE);
        } else {
            auto shape = opaqueShape(*image_);
            if (shape.size() * sizeof(ShapeRectangle) > largestImagePart(c))
                shape = {{0, 0, static_cast<std::uint16_t>(image_->width()),
                          static_cast<std::uint16_t>(image_->height())}};
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
    /// That of the surfaces, which changes with the connection.
    const WindowKind& kind_;
    xcb_window_t window_ = 0;
    xcb_gcontext_t graphics_ = 0;
    Size size_;
    std::optional<Bitmap> image_;
    Point origin_;
    std::int32_t x_ = INT32_MIN;
    std::int32_t y_ = INT32_MIN;
    bool visible_ = false;
    bool mapped_ = false;
    std::uint64_t raised_ = 0;
    Subscription compositor_;
    Subscription reopened_;
};

static_assert(sizeof(ShapeRectangle) == sizeof(xcb_rectangle_t));

}  // namespace

X11OverlaySurfaces::X11OverlaySurfaces(OverlayConnection& connection, X11Displays& displays)
    : connection_(connection), displays_(displays) {
    chooseVisual();
    reopened_ = connection_.reopened().observe([this] { chooseVisual(); });
}

X11OverlaySurfaces::~X11OverlaySurfaces() { xcb_free_colormap(connection_.get(), kind_.colormap); }

void X11OverlaySurfaces::chooseVisual() {
    const xcb_screen_t& screen = connection_.x().screen();
    kind_.visual = blendingVisual(screen);
    kind_.depth = kBlendingDepth;
    if (kind_.visual == 0) {
        kind_.visual = screen.root_visual;
        kind_.depth = screen.root_depth;
    }
    kind_.colormap = xcb_generate_id(connection_.get());
    xcb_create_colormap(connection_.get(), XCB_COLORMAP_ALLOC_NONE, kind_.colormap, screen.root,
                        kind_.visual);
}

std::unique_ptr<OverlaySurface> X11OverlaySurfaces::create(DisplayId, Size size) {
    if (connection_.isBroken()) return nullptr;
    auto surface = std::make_unique<Surface>(connection_, displays_, kind_, size);
    if (!surface->make()) return nullptr;
    return surface;
}

}  // namespace pintle::overlay
