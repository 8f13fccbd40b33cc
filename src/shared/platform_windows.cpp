// Platform: the environment and the roaming application data folder of Windows.
#include "shared/platform.h"

#include <array>

#include <shlobj.h>
#include <windows.h>

namespace Ostrel::Platform {

QString environmentValue(const QString &name)
{
    // The longest value that Windows allows, its end mark included.
    std::array<wchar_t, 32768> buffer;
    const DWORD length = GetEnvironmentVariableW(
        reinterpret_cast<const wchar_t *>(name.utf16()), buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length >= buffer.size())
        return {};
    return QString::fromWCharArray(buffer.data(), static_cast<qsizetype>(length));
}

QString applicationDataDirectory()
{
    std::array<wchar_t, MAX_PATH> buffer;
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, buffer.data())))
        return {};
    return QString::fromWCharArray(buffer.data());
}

} // namespace Ostrel::Platform
