#include "jet/storage/check/permissions.h"

#include "jet/storage/sid.h"

#include <set>
#include <string>
#include <utility>

namespace jet::check {
namespace {

const std::string kTable = "MSysACEs";
constexpr std::uint32_t kAllRights = 0xFFFFF;

} // namespace

bool isKnownAccount(const Bytes& account)
{
    return account.size() > 2 // of a workgroup file
           || account == sid::kAdmin || account == sid::kUsers || account == sid::kEngine
           || account == sid::kCreator;
}

void Permissions::add(Permission permission)
{
    const auto harmful = [&](const char* what) {
        m_findings.harmful(kTable, what, permission.row.page, permission.row.row);
    };
    if ((permission.rights & ~kAllRights) != 0)
        harmful("неизвестные права");
    if (!isKnownAccount(permission.account))
        harmful("права неизвестного пользователя");
    m_permissions[permission.object].push_back(std::move(permission));
}

void Permissions::check(const std::vector<Object>& objects)
{
    std::map<std::uint32_t, const Object*> byId;
    for (const Object& object : objects)
        byId.emplace(object.id, &object);
    checkEach(byId);
    for (const Object& object : objects) {
        if (object.isLocalTable() && !object.isSystem())
            checkTable(object);
    }
}

void Permissions::checkEach(const std::map<std::uint32_t, const Object*>& objects)
{
    for (const auto& entry : m_permissions) {
        const auto object = objects.find(entry.first);
        std::set<std::pair<Bytes, bool>> accounts;
        for (const Permission& permission : entry.second) {
            const auto harmful = [&](const char* what) {
                m_findings.harmful(kTable, what, permission.row.page, permission.row.row);
            };
            if (object == objects.end())
                harmful("права на объект, которого нет");
            else if (permission.inheritable && !object->second->isContainer()
                     && !object->second->isSystem())
                harmful("наследуемые права на объект, который ничего не содержит");
            if (!accounts.emplace(permission.account, permission.inheritable).second)
                harmful("права одного пользователя на объект указаны дважды");
        }
    }
}

// A new table gets the inheritable rights of its container; the account "creator" there
// stands for the table's owner.
Permissions::Rights Permissions::inherited(const Object& table) const
{
    Rights rights;
    const auto container = m_permissions.find(table.parent);
    if (container == m_permissions.end())
        return rights;
    for (const Permission& permission : container->second) {
        if (permission.inheritable)
            rights[permission.account == sid::kCreator ? table.owner : permission.account] |=
                permission.rights;
    }
    return rights;
}

void Permissions::checkTable(const Object& table)
{
    const auto permissions = m_permissions.find(table.id);
    if (permissions == m_permissions.end()) {
        m_findings.harmful(table.name, "на таблицу ни у кого нет прав", table.row.page,
                           table.row.row);
        return;
    }
    Rights rights;
    for (const Permission& permission : permissions->second)
        rights[permission.account] = permission.rights;
    if (rights != inherited(table))
        m_findings.harmless(table.name, "права на таблицу не такие, как на новые таблицы",
                            table.row.page, table.row.row);
}

} // namespace jet::check
