/* All schemas, and finding one by a verb. */
#ifndef SCHEMAS_H
#define SCHEMAS_H

#include "connectivity.h"
#include "domain.h"
#include "lus.h"
#include "operation.h"
#include "services.h"
#include "sessions.h"
#include "settings.h"

namespace records {

/* Every kind of resource that is kept, owners before what refers to them, since they are loaded in
 * this order: ROW(NAME, schema). */
/* clang-format off */
#define SCHEMAS(ROW) \
    ROW(DLC, dlc) ROW(PORT, port) ROW(LS, ls) ROW(CN, cn) ROW(CN_PORT, cn_port) \
    ROW(DSPU_TEMPLATE, dspu_template) ROW(PU, pu) ROW(DOWN_PU, down_pu) ROW(LU_POOL, lu_pool) \
    ROW(LU03, lu03) ROW(DOWN_LU, down_lu) ROW(EXTRA_DATA, extra_data) ROW(LOCAL_LU, local_lu) \
    ROW(COS, cos) ROW(COS_NODE_ROW, cos_node_row) ROW(COS_TG_ROW, cos_tg_row) \
    ROW(MODE_DEF, mode_def) ROW(PLU_DEF, plu_def) ROW(MODE, mode) ROW(PLU, plu) \
    ROW(DIRECTORY, directory) ROW(LS_ROUTING, ls_routing) ROW(LU62_TIMEOUT, lu62_timeout) \
    ROW(RTP_CONN, rtp_conn) ROW(PRIMARY_LINE, primary_line) ROW(PRIMARY_LU0, primary_lu0) \
    ROW(ACCESS_LIST, access_list) ROW(TP_DEF, tp) ROW(TP_LOAD, tp_load) \
    ROW(LU_LU_PASSWORD, lu_lu_password) ROW(USERID_PASSWORD, userid_password) \
    ROW(TN_ACCESS, tn_access) ROW(TN_ASSOC, tn_assoc) ROW(TN_REDIRECT, tn_redirect) \
    ROW(TAMRIX_SESSION, tamrix_session) ROW(SESSION, session) ROW(LOG_LINE, log_line) \
    ROW(TRACE_FILE, trace_file) ROW(USER, user) ROW(CPIC, cpic) ROW(RJE, rje)
/* clang-format on */

/* These, and those that are only listed. */
#define SCHEMA_ADDRESS(name, schema) , &schema
inline constexpr const Schema *all_schemas[] = {&domain_node,
                                                &domain_server SCHEMAS(SCHEMA_ADDRESS)};
#undef SCHEMA_ADDRESS

/* The schema that a verb serves: one that lists, defines, deletes, starts or stops, or an
 * indication.  Null when it serves none. */
const Schema *schema_by_verb(NB_USHORT opcode);

/* The one that texts and commands call so; null: none. */
const Schema *schema_by_name(std::string_view name);

/* The same for settings: the verb that asks for them, or the one that sets them. */
const Settings *settings_by_verb(NB_USHORT opcode);

const Settings *settings_by_name(std::string_view name);

} // namespace records

#endif
