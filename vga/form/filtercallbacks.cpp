#include "filtercallbacks.h"
#include "filterrules.h"
#include "holders.h"
#include <Mrm/MrmPublic.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>

namespace {

/* More than 0 while the program itself fills a field. */
NB_USHORT filling;

class FILLING {
public:
    FILLING() { filling++; }
    FILLING(const FILLING &) = delete;
    FILLING &operator=(const FILLING &) = delete;
    ~FILLING() { filling--; }
};

NB_VOID verify(Widget field, VGA_FILTER filter, XtPointer call_data) {
    auto *verify = static_cast<XmTextVerifyCallbackStruct *>(call_data);
    if (filling > 0 || verify->doit == False) {
        return;
    }
    const VGA_TEXT text(XmTextGetString(field));
    VGA_CHANGE change = {text.get(), static_cast<NB_ULONG>(verify->startPos),
                         static_cast<NB_ULONG>(verify->endPos), nullptr, 0};
    if (verify->text != nullptr && verify->text->ptr != nullptr && verify->text->length > 0) {
        change.text = verify->text->ptr;
        change.length = static_cast<NB_ULONG>(verify->text->length);
    }
    if (vga_check_change(filter, &change) == 0) {
        verify->doit = False;
    }
}

} // namespace

#define FILTER_CALLBACK(callback, filter)                                                          \
    NB_VOID callback(Widget field, XtPointer, XtPointer call_data) {                               \
        verify(field, filter, call_data);                                                          \
    }

FILTER_CALLBACK(vga_check_tp_name_cb, VGA_FILTER_TP_NAME)
FILTER_CALLBACK(vga_check_ip_name_cb, VGA_FILTER_IP_NAME)
FILTER_CALLBACK(vga_check_ip_addr_cb, VGA_FILTER_IP_ADDR)
FILTER_CALLBACK(vga_check_alphanum_cb, VGA_FILTER_ALPHANUM)
FILTER_CALLBACK(vga_check_num_cb, VGA_FILTER_NUM)
FILTER_CALLBACK(vga_check_signed_num_cb, VGA_FILTER_SIGNED_NUM)
FILTER_CALLBACK(vga_check_caps_alphanum_cb, VGA_FILTER_CAPS_ALPHANUM)
FILTER_CALLBACK(vga_check_hex_cb, VGA_FILTER_HEX)
FILTER_CALLBACK(vga_all_caps_cb, VGA_FILTER_ALL_CAPS)
FILTER_CALLBACK(vga_check_hex_pwd_cb, VGA_FILTER_HEX_PWD)
FILTER_CALLBACK(vga_check_filename_cb, VGA_FILTER_FILENAME)
FILTER_CALLBACK(vga_check_pathname_cb, VGA_FILTER_PATHNAME)
FILTER_CALLBACK(vga_check_ebcdic_cb, VGA_FILTER_EBCDIC)
FILTER_CALLBACK(vga_check_ebcdic_lower_cb, VGA_FILTER_EBCDIC_LOWER)
FILTER_CALLBACK(vga_check_ebcdic_ae_cb, VGA_FILTER_EBCDIC_AE)
FILTER_CALLBACK(vga_check_ebcdic_ae_pwd_cb, VGA_FILTER_EBCDIC_AE_PWD)
FILTER_CALLBACK(vga_check_mode_name_cb, VGA_FILTER_MODE_NAME)
FILTER_CALLBACK(vga_check_lu_name_template_cb, VGA_FILTER_LU_NAME_TEMPLATE)

NB_VOID vga_register_field_filters(NB_VOID) {
    static const struct {
        const NB_CHAR *name;
        XtCallbackProc proc;
    } filters[] = {
        {"vga_check_tp_name_cb", vga_check_tp_name_cb},
        {"vga_check_ip_name_cb", vga_check_ip_name_cb},
        {"vga_check_ip_addr_cb", vga_check_ip_addr_cb},
        {"vga_check_alphanum_cb", vga_check_alphanum_cb},
        {"vga_check_num_cb", vga_check_num_cb},
        {"vga_check_signed_num_cb", vga_check_signed_num_cb},
        {"vga_check_caps_alphanum_cb", vga_check_caps_alphanum_cb},
        {"vga_check_hex_cb", vga_check_hex_cb},
        {"vga_all_caps_cb", vga_all_caps_cb},
        {"vga_check_hex_pwd_cb", vga_check_hex_pwd_cb},
        {"vga_check_filename_cb", vga_check_filename_cb},
        {"vga_check_pathname_cb", vga_check_pathname_cb},
        {"vga_check_ebcdic_cb", vga_check_ebcdic_cb},
        {"vga_check_ebcdic_lower_cb", vga_check_ebcdic_lower_cb},
        {"vga_check_ebcdic_ae_cb", vga_check_ebcdic_ae_cb},
        {"vga_check_ebcdic_ae_pwd_cb", vga_check_ebcdic_ae_pwd_cb},
        {"vga_check_mode_name_cb", vga_check_mode_name_cb},
        {"vga_check_lu_name_template_cb", vga_check_lu_name_template_cb},
    };
    for (const auto &row : filters) {
        MRMRegisterArg argument = {const_cast<NB_CHAR *>(row.name),
                                   reinterpret_cast<XtPointer>(row.proc)};
        MrmRegisterNames(&argument, 1);
    }
}

NB_VOID vga_fill_field(Widget field, const NB_CHAR *text) {
    if (field == nullptr) {
        return;
    }
    const FILLING now;
    XmTextSetString(field, const_cast<NB_CHAR *>(text != nullptr ? text : ""));
    XmTextShowPosition(field, 0);
}
