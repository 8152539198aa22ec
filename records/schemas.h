/* All schemas, and finding one by a verb or by its name. */
#ifndef SCHEMAS_H
#define SCHEMAS_H

#include "connectivity.h"
#include "domain.h"
#include "lus.h"
#include "services.h"
#include "sessions.h"
#include "settings.h"

namespace records {

inline constexpr const Schema *all_schemas[] = {
    &dlc,
    &port,
    &ls,
    &cn,
    &cn_port,
    &dspu_template,
    &pu,
    &down_pu,
    &lu_pool,
    &lu03,
    &down_lu,
    &extra_data,
    &local_lu,
    &cos,
    &cos_node_row,
    &cos_tg_row,
    &mode_def,
    &plu_def,
    &mode,
    &plu,
    &directory,
    &ls_routing,
    &lu62_timeout,
    &rtp_conn,
    &primary_line,
    &primary_lu0,
    &access_list,
    &tp,
    &tp_load,
    &lu_lu_password,
    &userid_password,
    &tn_access,
    &tn_assoc,
    &tn_redirect,
    &tamrix_session,
    &user,
    &cpic,
    &rje,
    &domain_node,
    &domain_server,
};

/* The schema that a verb serves: one that lists, defines, deletes, starts or stops, or an
 * indication.  Null when it serves none. */
const Schema *schema_by_verb(NB_USHORT opcode);

/* The same for settings: the verb that asks for them, or the one that sets them. */
const Settings *settings_by_verb(NB_USHORT opcode);

const Schema *schema_by_name(std::string_view name);
const Settings *settings_by_name(std::string_view name);

} // namespace records

#endif
