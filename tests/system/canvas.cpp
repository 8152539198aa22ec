#include "canvas.h"

#include <X11/Xlib.h>
#include <X11/Xproto.h>
#include <X11/extensions/record.h>
#include <X11/extensions/render.h>
#include <X11/extensions/renderproto.h>

namespace sys {

namespace {

/* First and last code of the requests that are reported. */
constexpr unsigned char reported[][2] = {{X_DestroyWindow, X_DestroyWindow},
                                         {X_CreatePixmap, X_FreePixmap},
                                         {X_ClearArea, X_CopyArea},
                                         {X_PolyFillRectangle, X_PolyFillRectangle},
                                         {X_PolyText8, X_ImageText16}};

constexpr unsigned char reported_of_render[][2] = {
    {X_RenderCreatePicture, X_RenderCreatePicture},
    {X_RenderFreePicture, X_RenderFreePicture},
    {X_RenderAddGlyphs, X_RenderAddGlyphs},
    {X_RenderCompositeGlyphs8, X_RenderFillRectangles}};

/* Each client numbers its windows and pixmaps from a base of its own. */
constexpr uint32_t numbers_of_a_client = 1u << 21;

} // namespace

bool Canvas::Area::holds(int text_x, int text_y) const {
    return text_x >= x && text_x < x + width && text_y >= y && text_y < y + height;
}

Canvas::Canvas(const std::string &display_name)
    : control_(XOpenDisplay(display_name.c_str())), data_(XOpenDisplay(display_name.c_str())) {
    if (control_ == nullptr || data_ == nullptr) {
        return;
    }
    std::vector<XRecordRange *> ranges;
    for (const auto &[first, last] : reported) {
        ranges.push_back(XRecordAllocRange());
        ranges.back()->core_requests = {first, last};
        ranges.back()->client_died = True;
    }
    int event = 0, error = 0;
    XQueryExtension(control_, RENDER_NAME, &render_, &event, &error);
    const auto major = static_cast<unsigned char>(render_);
    for (const auto &[first, last] : reported_of_render) {
        ranges.push_back(XRecordAllocRange());
        ranges.back()->ext_requests = {{major, major}, {first, last}};
    }
    XRecordClientSpec clients = XRecordFutureClients;
    context_ = XRecordCreateContext(control_, 0, &clients, 1, ranges.data(),
                                    static_cast<int>(ranges.size()));
    for (XRecordRange *range : ranges) {
        XFree(range);
    }
    XSync(control_, False);
    const auto receive = [](XPointer canvas, XRecordInterceptData *data) { on_data(canvas, data); };
    working_ = context_ != 0 && XRecordEnableContextAsync(data_, context_, receive,
                                                          reinterpret_cast<XPointer>(this)) != 0;
}

Canvas::~Canvas() {
    // Closing a connection that still reports would wait for the end of the reports.
    if (working_) {
        XRecordDisableContext(control_, context_);
        XSync(control_, False);
        XRecordProcessReplies(data_);
    }
    for (Display *display : {control_, data_}) {
        if (display != nullptr) {
            XCloseDisplay(display);
        }
    }
}

std::vector<int> Canvas::descriptors() const {
    return working_ ? std::vector<int>{ConnectionNumber(data_)} : std::vector<int>{};
}

void Canvas::take() {
    if (working_) {
        XRecordProcessReplies(data_);
    }
}

void Canvas::on_data(char *canvas, void *data) {
    auto *report = static_cast<XRecordInterceptData *>(data);
    auto *self = reinterpret_cast<Canvas *>(canvas);
    if (report->category == XRecordFromClient && report->data != nullptr) {
        self->handle({report->data, report->data_len * 4});
    } else if (report->category == XRecordClientDied) {
        // The next client gets the same numbers for its windows.
        const uint32_t first = static_cast<uint32_t>(report->id_base);
        self->drawables_.erase(self->drawables_.lower_bound(first),
                               self->drawables_.lower_bound(first + numbers_of_a_client));
    }
    XRecordFreeData(report);
}

void Canvas::handle(const Request &request) {
    const uint32_t drawable = request.at<uint32_t>(4);
    if (request.at<uint8_t>(0) == render_) {
        handle_render(request);
        return;
    }
    switch (request.at<uint8_t>(0)) {
    case X_DestroyWindow:
    case X_CreatePixmap:
    case X_FreePixmap:
        drawables_.erase(drawable);
        break;
    case X_ClearArea: {
        constexpr int to_the_edge = 1 << 16;
        const auto form = request.as<xClearAreaReq>();
        erase(drawable, {form.x, form.y, form.width != 0 ? form.width : to_the_edge,
                         form.height != 0 ? form.height : to_the_edge});
        break;
    }
    case X_CopyArea:
        copy(request);
        break;
    case X_PolyFillRectangle:
        erase_all(drawable, request, sizeof(xPolyFillRectangleReq));
        break;
    case X_PolyText8:
        draw(request, 1);
        break;
    case X_PolyText16:
        draw(request, 2);
        break;
    case X_ImageText8:
        draw_image(request, 1);
        break;
    case X_ImageText16:
        draw_image(request, 2);
        break;
    default:
        break;
    }
}

void Canvas::handle_render(const Request &request) {
    const uint8_t kind = request.at<uint8_t>(1);
    switch (kind) {
    case X_RenderCreatePicture: {
        const auto form = request.as<xRenderCreatePictureReq>();
        pictures_[form.pid] = form.drawable;
        break;
    }
    case X_RenderFreePicture:
        pictures_.erase(request.at<uint32_t>(4));
        break;
    case X_RenderAddGlyphs:
        glyphs_.learn(request);
        break;
    case X_RenderFillRectangles:
        erase_all(pictures_[request.as<xRenderFillRectanglesReq>().dst], request,
                  sizeof(xRenderFillRectanglesReq));
        break;
    default:
        for (const Text &text :
             glyphs_.read(request, size_t{1} << (kind - X_RenderCompositeGlyphs8))) {
            put(pictures_[request.as<xRenderCompositeGlyphs8Req>().dst], text.x, text.y,
                text.words);
        }
        break;
    }
}

/* A list of rectangles. */
void Canvas::erase_all(uint32_t drawable, const Request &request, size_t first) {
    for (size_t at = first; at < request.length; at += sizeof(xRectangle)) {
        const auto form = request.at<xRectangle>(at);
        erase(drawable, {form.x, form.y, form.width, form.height});
    }
}

/* A list of pieces: a length and a distance before each, or 255 and the number of a font. */
void Canvas::draw(const Request &request, unsigned width) {
    constexpr uint8_t font_change = 255;
    const auto form = request.as<xPolyTextReq>();
    std::string words;
    size_t at = sizeof form;
    while (at + 2 <= request.length) {
        const auto count = request.at<uint8_t>(at);
        if (count == font_change) {
            at += 5;
            continue;
        }
        at += 2;
        for (unsigned character = 0; character < count && at < request.length; character++) {
            words += request.at<char>(at + width - 1);
            at += width;
        }
        if (count == 0) {
            break; // padding
        }
    }
    put(form.drawable, form.x, form.y, words);
}

void Canvas::draw_image(const Request &request, unsigned width) {
    const auto form = request.as<xImageTextReq>();
    std::string words;
    for (unsigned character = 0; character < form.nChars; character++) {
        words += request.at<char>(sizeof form + character * width + width - 1);
    }
    put(form.drawable, form.x, form.y, words);
}

void Canvas::put(uint32_t drawable, int x, int y, const std::string &words) {
    if (words.find_first_not_of(' ') != std::string::npos) {
        drawables_[drawable][y][x] = words;
    }
}

void Canvas::erase(uint32_t drawable, const Area &area) {
    const auto found = drawables_.find(drawable);
    if (found == drawables_.end()) {
        return;
    }
    for (auto &[y, row] : found->second) {
        std::erase_if(row, [&area, y = y](const auto &text) { return area.holds(text.first, y); });
    }
    std::erase_if(found->second, [](const auto &row) { return row.second.empty(); });
}

void Canvas::copy(const Request &request) {
    const auto form = request.as<xCopyAreaReq>();
    const Area from = {form.srcX, form.srcY, form.width, form.height};
    std::vector<Text> moved;
    for (const Text &text : texts(form.srcDrawable)) {
        if (from.holds(text.x, text.y)) {
            moved.push_back(
                {text.x - form.srcX + form.dstX, text.y - form.srcY + form.dstY, text.words});
        }
    }
    erase(form.dstDrawable, {form.dstX, form.dstY, form.width, form.height});
    for (const Text &text : moved) {
        put(form.dstDrawable, text.x, text.y, text.words);
    }
}

std::vector<Text> Canvas::texts(unsigned long window) const {
    std::vector<Text> all;
    const auto found = drawables_.find(static_cast<uint32_t>(window));
    if (found != drawables_.end()) {
        for (const auto &[y, row] : found->second) {
            for (const auto &[x, words] : row) {
                all.push_back({x, y, words});
            }
        }
    }
    return all;
}

std::vector<std::string> Canvas::lines(unsigned long window) const {
    std::vector<std::string> all;
    int last = 0;
    for (const Text &text : texts(window)) {
        if (all.empty() || text.y != last) {
            all.emplace_back();
        }
        all.back() += (all.back().empty() ? "" : " ") + text.words;
        last = text.y;
    }
    return all;
}

} // namespace sys
