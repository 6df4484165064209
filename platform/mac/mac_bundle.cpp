#include "platform/mac/mac_bundle.h"

#include <array>
#include <climits>
#include <string>

#include "platform/mac/cf.h"

namespace pintle {
namespace {

std::filesystem::path pathOf(CFURLRef url) {
    std::array<UInt8, PATH_MAX> buffer = {};
    if (!url || !CFURLGetFileSystemRepresentation(url, Boolean{1}, buffer.data(),
                                                  static_cast<CFIndex>(buffer.size())))
        return {};
    return reinterpret_cast<const char*>(buffer.data());
}

std::string textOf(CFBundleRef bundle, const char* key) {
    return fromCfString(CFBundleGetValueForInfoDictionaryKey(bundle, cfString(key).get()));
}

}  // namespace

Bundle readMacBundle() {
    Bundle read;
    read.identifier.clear();
    const CFBundleRef bundle = CFBundleGetMainBundle();
    if (!bundle) return read;
    read.identifier = fromCfString(CFBundleGetIdentifier(bundle));
    read.shortVersion = textOf(bundle, "CFBundleShortVersionString");
    read.build = textOf(bundle, "CFBundleVersion");
    read.executable = pathOf(CfRef<CFURLRef>::adopt(CFBundleCopyExecutableURL(bundle)).get());
    return read;
}

std::filesystem::path readMacBundlePath() {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    if (!bundle) return {};
    return pathOf(CfRef<CFURLRef>::adopt(CFBundleCopyBundleURL(bundle)).get());
}

}  // namespace pintle
