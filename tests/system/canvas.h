/* What is written on the screen, read from outside: the server reports the drawing requests of
 * every client that connects later, and this keeps, for each window and pixmap, which text stands
 * where. Areas that are filled, cleared or copied take their texts with them, so that a list that
 * is drawn line by line into a pixmap reads as it looks.
 *
 * Only texts in the server's own fonts are seen; the tests' user resources choose such fonts. */
#ifndef SYSTEM_CANVAS_H
#define SYSTEM_CANVAS_H

#include "poll.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

typedef struct _XDisplay Display;

namespace sys {

struct Text {
    int x, y; /* where its base line begins */
    std::string words;
};

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
    struct Request;

    static void on_data(char *canvas, void *data);
    void handle(const Request &request);
    void draw(const Request &request, unsigned width);
    void draw_image(const Request &request, unsigned width);
    void put(uint32_t drawable, int x, int y, const std::string &words);
    void erase(uint32_t drawable, const Area &area);
    void copy(const Request &request);

    Display *control_ = nullptr;
    Display *data_ = nullptr;
    unsigned long context_ = 0;
    bool working_ = false;
    std::map<uint32_t, Rows> drawables_;
};

} // namespace sys

#endif
