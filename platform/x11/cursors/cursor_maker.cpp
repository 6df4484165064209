#include "platform/x11/cursors/cursor_maker.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <bit>

namespace pintle::x11 {
namespace {

constexpr std::uint8_t kDepth = 32;
constexpr std::size_t kRequestHead = 64;

/// In the server's byte order.
std::vector<std::uint32_t> pixelsOf(const CursorFrame& frame, const xcb_setup_t& setup) {
    auto pixels = frame.argb();
    const bool serverIsLittle = setup.image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    if (serverIsLittle != (std::endian::native == std::endian::little))
        for (auto& pixel : pixels) pixel = __builtin_bswap32(pixel);
    return pixels;
}

}  // namespace

CursorMaker::CursorMaker(XConnection& connection) : connection_(connection) {
    const Reply<xcb_render_query_pict_formats_reply_t> reply(xcb_render_query_pict_formats_reply(
        connection.get(), xcb_render_query_pict_formats(connection.get()), nullptr));
    if (!reply) return;
    for (auto format = xcb_render_query_pict_formats_formats_iterator(reply.get()); format.rem > 0;
         xcb_render_pictforminfo_next(&format)) {
        const auto& direct = format.data->direct;
        if (format.data->type == XCB_RENDER_PICT_TYPE_DIRECT && format.data->depth == kDepth &&
            direct.alpha_shift == 24 && direct.alpha_mask == 0xFF && direct.red_shift == 16 &&
            direct.red_mask == 0xFF && direct.green_shift == 8 && direct.green_mask == 0xFF &&
            direct.blue_shift == 0 && direct.blue_mask == 0xFF)
            format_ = format.data->id;
    }
}

/// A pixmap of the frames' size and the picture over it, and the requests made so far.
class CursorMaker::Drawing {
  public:
    Drawing(XConnection& connection, xcb_render_pictformat_t format)
        : connection_(connection), c_(connection.get()), format_(format) {}
    ~Drawing() { release(); }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    void put(const CursorFrame& frame) {
        if (frame.width != width_ || frame.height != height_) open(frame);
        const auto pixels = pixelsOf(frame, *xcb_get_setup(c_));
        const auto rowBytes = static_cast<std::size_t>(frame.width) * 4;
        const std::size_t mostBytes = std::size_t{xcb_get_maximum_request_length(c_)} * 4;
        const auto rows = std::max<std::size_t>(1, (mostBytes - kRequestHead) / rowBytes);
        for (std::size_t row = 0; row < static_cast<std::size_t>(frame.height); row += rows) {
            const auto count = std::min(rows, static_cast<std::size_t>(frame.height) - row);
            requests.push_back(xcb_put_image_checked(
                c_, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap_, context_, static_cast<std::uint16_t>(width_),
                static_cast<std::uint16_t>(count), 0, static_cast<std::int16_t>(row), 0, kDepth,
                static_cast<std::uint32_t>(count * rowBytes),
                reinterpret_cast<const std::uint8_t*>(pixels.data() +
                                                      row * static_cast<std::size_t>(width_))));
        }
    }
    xcb_cursor_t cursor(const CursorFrame& frame) {
        const xcb_cursor_t made = xcb_generate_id(c_);
        requests.push_back(xcb_render_create_cursor_checked(c_, made, picture_,
                                                            static_cast<std::uint16_t>(frame.hotspotX),
                                                            static_cast<std::uint16_t>(frame.hotspotY)));
        return made;
    }
    void nameIt(xcb_cursor_t cursor, std::string_view name) {
        requests.push_back(xcb_xfixes_set_cursor_name_checked(
            c_, cursor, static_cast<std::uint16_t>(name.size()), name.data()));
    }
    xcb_cursor_t animation(std::span<const xcb_render_animcursorelt_t> frames) {
        const xcb_cursor_t made = xcb_generate_id(c_);
        requests.push_back(xcb_render_create_anim_cursor_checked(
            c_, made, static_cast<std::uint32_t>(frames.size()), frames.data()));
        return made;
    }
    void free(xcb_cursor_t cursor) { requests.push_back(xcb_free_cursor_checked(c_, cursor)); }

    std::vector<xcb_void_cookie_t> requests;

  private:
    void open(const CursorFrame& frame) {
        release();
        width_ = frame.width;
        height_ = frame.height;
        pixmap_ = xcb_generate_id(c_);
        context_ = xcb_generate_id(c_);
        picture_ = xcb_generate_id(c_);
        requests.push_back(xcb_create_pixmap_checked(c_, kDepth, pixmap_, connection_.root(),
                                                     static_cast<std::uint16_t>(width_),
                                                     static_cast<std::uint16_t>(height_)));
        requests.push_back(xcb_create_gc_checked(c_, context_, pixmap_, 0, nullptr));
        requests.push_back(xcb_render_create_picture_checked(c_, picture_, pixmap_, format_, 0, nullptr));
    }
    void release() {
        if (pixmap_ == 0) return;
        // What was refused at its making is refused here again; the first error has been kept.
        for (const auto request : {xcb_render_free_picture_checked(c_, picture_),
                                   xcb_free_gc_checked(c_, context_), xcb_free_pixmap_checked(c_, pixmap_)})
            xcb_discard_reply(c_, request.sequence);
        pixmap_ = 0;
    }
    XConnection& connection_;
    xcb_connection_t* c_;
    xcb_render_pictformat_t format_;
    int width_ = 0;
    int height_ = 0;
    xcb_pixmap_t pixmap_ = 0;
    xcb_gcontext_t context_ = 0;
    xcb_render_picture_t picture_ = 0;
};

int CursorMaker::make(const CursorPicture& picture, std::span<const std::string_view> names,
                      std::vector<xcb_cursor_t>& made) {
    made.clear();
    std::vector<std::vector<xcb_render_animcursorelt_t>> elements(names.size());
    Drawing drawing(connection_, format_);
    for (const auto& frame : picture.frames()) {
        drawing.put(frame);
        for (std::size_t i = 0; i < names.size(); ++i) {
            elements[i].push_back({drawing.cursor(frame), frame.delay});
            if (picture.isAnimated()) drawing.nameIt(elements[i].back().cursor, names[i]);
        }
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!picture.isAnimated()) {
            made.push_back(elements[i].front().cursor);
            continue;
        }
        made.push_back(drawing.animation(elements[i]));
        for (const auto& element : elements[i]) drawing.free(element.cursor);
    }
    const int error = connection_.firstError(drawing.requests);
    if (error == 0) return 0;
    for (const auto cursor : made)
        xcb_discard_reply(connection_.get(), xcb_free_cursor_checked(connection_.get(), cursor).sequence);
    made.clear();
    return error;
}

}  // namespace pintle::x11
