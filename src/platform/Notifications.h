// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

#include <functional>
#include <memory>

/// Tells whoever asked that something happened, by name. The application owns one and hands it out
/// by reference. Main thread only; handlers run inside post(), in the order of their subscriptions.
class Notifications
{
public:
    /// A rule's settings changed; kTheModel holds the rule.
    static constexpr QLatin1StringView kRuleChanged{"ruleChanged"};
    /// Presets were saved or removed.
    static constexpr QLatin1StringView kPresetsChanged{"presetsChanged"};
    /// A folder grant was recorded.
    static constexpr QLatin1StringView kGotAuthorized{"gotAuthorized"};
    static constexpr QLatin1StringView kTheModel{"theModel"};

    using Handler = std::function<void(const QVariantMap &userInfo)>;

private:
    struct Entry;
    struct List;

public:
    /// Keeps a handler subscribed for as long as it lives; may outlive the notifications.
    class [[nodiscard]] Subscription
    {
    public:
        Subscription() = default;
        ~Subscription();
        Subscription(Subscription &&) noexcept = default;
        Subscription &operator=(Subscription &&other) noexcept;

    private:
        friend class Notifications;
        Subscription(std::weak_ptr<List> list, std::shared_ptr<Entry> entry);
        void cancel();

        std::weak_ptr<List> m_list;
        std::shared_ptr<Entry> m_entry;
    };

    Notifications();
    ~Notifications();
    Notifications(const Notifications &) = delete;
    Notifications &operator=(const Notifications &) = delete;

    Subscription subscribe(const QString &name, Handler handler);
    /// A handler that is cancelled meanwhile is no longer called; one that is added meanwhile is
    /// called from the next post on.
    void post(const QString &name, const QVariantMap &userInfo = {});

private:
    std::shared_ptr<List> m_list;
};
