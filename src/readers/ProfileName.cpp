// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ProfileName.h"

#include <lcms2.h>
#include <memory>

namespace {

constexpr cmsUInt32Number kLongestName = 1024;

struct Closer
{
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};

} // namespace

QString profileName(const QByteArray &profile)
{
    if (profile.isEmpty())
        return {};
    cmsSetLogErrorHandler([](cmsContext, cmsUInt32Number, const char *) {});
    const std::unique_ptr<void, Closer> opened(
        cmsOpenProfileFromMem(profile.constData(), static_cast<cmsUInt32Number>(profile.size())));
    if (!opened)
        return {};
    wchar_t name[kLongestName] = {};
    cmsGetProfileInfo(opened.get(), cmsInfoDescription, "en", "US", name, sizeof(name));
    name[kLongestName - 1] = 0;
    return QString::fromWCharArray(name).trimmed();
}
