#include "resourcereader.h"
#include "globals.h"
#include "nbbase.h"
#include "toolkit.h"
#include <Xm/Xm.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <strings.h>

namespace {

constexpr NB_USHORT max_name = 30;
constexpr NB_USHORT max_short_value = 30;

struct FLAG_OPTION {
    const NB_CHAR *resource;
    NB_USHORT entry;
    NB_USHORT default_value;
};

constexpr FLAG_OPTION flag_options[] = {
    {".supportCPIC", VGA_SUPPORTED_CPIC, 1},
    {".supportRJE", VGA_SUPPORTED_RJE, 1},
    {".supportDirectory", VGA_SUPPORTED_DIRECTORY, 0},
    {".supportApply", VGA_SUPPORTED_APPLY, 0},
};

constexpr NB_USHORT platform_linux = 14;

/* Which link types each platform has; a platform of 0 ends the table. */
struct CARD_TYPE {
    NB_USHORT link_type;
    NB_USHORT platform;
    NB_USHORT implementation;
};

constexpr CARD_TYPE card_types[] = {
    {0, platform_linux, 1},
    {1, platform_linux, 15},
    {2, platform_linux, 5},
    {7, platform_linux, 6},
    {15, platform_linux, 20},
    {129, platform_linux, 18},
    {0, 0, 0},
};

struct LINK_TYPE {
    NB_USHORT link_type;
    NB_USHORT *implementation;
};

const LINK_TYPE link_types[] = {
    {0, &gvga_impl_sdlc},  {1, &gvga_impl_qllc},       {2, &gvga_impl_tr},    {6, &gvga_impl_fddi},
    {7, &gvga_impl_ether}, {8, &gvga_impl_fr},         {11, &gvga_impl_chnl}, {15, &gvga_impl_ip},
    {129, &gvga_impl_mpc}, {130, &gvga_impl_mpc_plus},
};

NB_VOID set_link_types(NB_VOID) {
    gvga_platform = platform_linux;
    for (const LINK_TYPE &link : link_types) {
        *link.implementation = 0;
        for (const CARD_TYPE *card = card_types; card->platform != 0; card++) {
            if (card->platform == gvga_platform && card->link_type == link.link_type) {
                *link.implementation = card->implementation;
            }
        }
    }
}

NB_USHORT ends_with(std::string_view text, std::string_view end) {
    return text.size() >= end.size() &&
           strncasecmp(text.data() + text.size() - end.size(), end.data(), end.size()) == 0;
}

/* Called for each entry of the database: its name is a colour's when its last part ends so. */
Bool convert_colour(XrmDatabase *, XrmBindingList, XrmQuarkList parts, XrmRepresentation *type,
                    XrmValue *value, XPointer) {
    const NB_CHAR *last = "";
    for (; *parts != NULLQUARK; parts++) {
        last = XrmQuarkToString(*parts);
    }
    static const XrmRepresentation text = XrmStringToQuark(XmRString);
    if (*type == text && (ends_with(last, "color") || ends_with(last, "ground"))) {
        Pixel pixel = 0;
        XrmValue to = {sizeof(pixel), reinterpret_cast<XPointer>(&pixel)};
        XtConvertAndStore(gvga_toplevel, XmRString, value, XmRPixel, &to);
    }
    return False;
}

} // namespace

NB_VOID vga_warn_of_colours(NB_VOID) {
    XrmQuark names[] = {XrmStringToQuark(VGA_CLASS), NULLQUARK};
    XrmEnumerateDatabase(gvga_resource_database, names, names, XrmEnumAllLevels, convert_colour,
                         nullptr);
}

NB_USHORT vga_get_resource_string(const NB_CHAR *name, const NB_CHAR *default_value,
                                  NB_CHAR *buffer, NB_USHORT max) {
    NB_CHAR *type = nullptr;
    XrmValue value = {0, nullptr};
    Bool found = False;
    if (strlen(name) <= max_name && gvga_resource_database != nullptr) {
        NB_CHAR full_name[sizeof(VGA_CLASS) + max_name];
        snprintf(full_name, sizeof(full_name), "%s%s", VGA_CLASS, name);
        found = XrmGetResource(gvga_resource_database, full_name, full_name, &type, &value);
    }
    if (found && value.size <= max) {
        memcpy(buffer, value.addr, value.size);
        buffer[value.size] = '\0';
        return 1;
    }
    strncpy(buffer, default_value, max);
    buffer[max] = '\0';
    return 0;
}

NB_USHORT vga_get_resource_bool(const NB_CHAR *name, NB_USHORT default_value) {
    NB_CHAR text[max_short_value + 1];
    vga_get_resource_string(name, "", text, max_short_value);
    if (text[0] == '\0') {
        return default_value;
    }
    return strpbrk(text, "Yy") != nullptr;
}

NB_ULONG vga_get_resource_ulong(const NB_CHAR *name, NB_ULONG default_value, NB_ULONG min,
                                NB_ULONG max) {
    NB_CHAR text[max_short_value + 1];
    vga_get_resource_string(name, "", text, max_short_value);
    NB_CHAR *end = nullptr;
    unsigned long long value = strtoull(text, &end, 0);
    if (end == text || end[strspn(end, " \t\r")] != '\0' || value >= UINT32_MAX) {
        return default_value;
    }
    if (min != max && (value < min || value > max)) {
        return default_value;
    }
    return static_cast<NB_ULONG>(value);
}

NB_VOID vga_get_options(NB_VOID) {
    gvga_querybuf_size = vga_get_resource_ulong(".queryBufferSize", 65535, 2048, 65535);
    for (const FLAG_OPTION &option : flag_options) {
        gvga_supported[option.entry] = vga_get_resource_bool(option.resource, option.default_value);
    }
    if (gvga_variant_x != 0 || gvga_variant_y != 0) {
        gvga_supported[VGA_SUPPORTED_RJE] = 0;
    }
    gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = vsm_is_client_server();
    for (VGA_LEAD_DIALOG &dialog : gvga_lead_dialogs) {
        dialog.offered = vga_get_resource_bool(dialog.resource, 1);
    }
    gvga_look_only = vga_get_resource_bool("*readOnly", 0);
    vga_get_web_browser_path();
    vga_get_resource_string(".verbLog", "", gvga_verb_log_file, sizeof(gvga_verb_log_file) - 1);
    vga_get_resource_string(".modelFile", "", gvga_model_file, sizeof(gvga_model_file) - 1);
    set_link_types();
}

NB_VOID vga_get_web_browser_path(NB_VOID) {
    vga_get_resource_string("*webBrowser", "netscape", gvga_web_browser,
                            sizeof(gvga_web_browser) - 1);
}
