// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Notifications.h"

#include <thread>
#include <utility>
#include <vector>

struct Notifications::Entry
{
    QString name;
    Handler handler;
    bool cancelled = false;
};

struct Notifications::List
{
    std::vector<std::shared_ptr<Entry>> entries;
    std::thread::id thread = std::this_thread::get_id();
};

Notifications::Subscription::Subscription(std::weak_ptr<List> list, std::shared_ptr<Entry> entry)
    : m_list(std::move(list))
    , m_entry(std::move(entry))
{
}

Notifications::Subscription::~Subscription()
{
    cancel();
}

Notifications::Subscription &Notifications::Subscription::operator=(Subscription &&other) noexcept
{
    if (this != &other) {
        cancel();
        m_list = std::move(other.m_list);
        m_entry = std::move(other.m_entry);
    }
    return *this;
}

void Notifications::Subscription::cancel()
{
    if (!m_entry)
        return;
    m_entry->cancelled = true;
    if (const auto list = m_list.lock())
        std::erase(list->entries, m_entry);
    m_entry.reset();
}

Notifications::Notifications()
    : m_list(std::make_shared<List>())
{
}

Notifications::~Notifications() = default;

Notifications::Subscription Notifications::subscribe(const QString &name, Handler handler)
{
    Q_ASSERT(m_list->thread == std::this_thread::get_id());
    auto entry = std::make_shared<Entry>(Entry{name, std::move(handler)});
    m_list->entries.push_back(entry);
    return {m_list, std::move(entry)};
}

void Notifications::post(const QString &name, const QVariantMap &userInfo)
{
    Q_ASSERT(m_list->thread == std::this_thread::get_id());
    const auto entries = m_list->entries;
    for (const std::shared_ptr<Entry> &entry : entries) {
        if (entry->name == name && !entry->cancelled)
            entry->handler(userInfo);
    }
}
