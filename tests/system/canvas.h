/* What is written on the screen, read from outside: the server reports the drawing requests of
 * every client that connects later, and this keeps, for each window and pixmap, which text stands
 * where. Areas that are filled, cleared or copied take their texts with them, so that a list that
 * is drawn line by line into a pixmap reads as it looks.
 *
 * Texts in the server's own fonts are seen, and those in scalable ones (glyphs.h). */
#ifndef SYSTEM_CANVAS_H
#define SYSTEM_CANVAS_H

#include "glyphs.h"
#include "poll.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

typedef struct _XDisplay Display;

namespace sys {

class Canvas : public Source {
public:
    /* Two connections to the server of that name. */
    explicit Canvas(const std::string &display_name);
    ~Canvas() override;

    bool working() const { return working_; }

    std::vector<int> descriptors() const override;
    void take() override;

    /* The texts of a window, from top to bottom and from left to right. */
    std::vector<Text> texts(unsigned long window) const;

    /* The same as lines: texts of one base line joined by blanks. */
    std::vector<std::string> lines(unsigned long window) const;

    /* As if nothing had been drawn yet. */
    void forget() { drawables_.clear(); }

private:
    struct Area {
        int x, y, width, height;
        bool holds(int text_x, int text_y) const;
    };
    using Row = std::map<int, std::string>; /* by x */
    using Rows = std::map<int, Row>;        /* by y */
    static void on_data(char *canvas, void *data);
    void handle(const Request &request);
    void draw(const Request &request, unsigned width);
    void draw_image(const Request &request, unsigned width);
    void handle_render(const Request &request);
    void erase_all(uint32_t drawable, const Request &request, size_t first);
    void put(uint32_t drawable, int x, int y, const std::string &words);
    void erase(uint32_t drawable, const Area &area);
    void copy(const Request &request);

    Display *control_ = nullptr;
    Display *data_ = nullptr;
    unsigned long context_ = 0;
    bool working_ = false;
    int render_ = 0; /* first byte of the requests that draw glyphs */
    Glyphs glyphs_;
    std::map<uint32_t, uint32_t> pictures_; /* the drawable that each is for */
    std::map<uint32_t, Rows> drawables_;
};

} // namespace sys

#endif
