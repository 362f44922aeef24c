#include "dsp/NoiseModelLocation.h"

#include "platform/Platform.h"

namespace Lumora {

NoiseModelLocation NoiseModelLocation::standard(const std::string& moduleFolder,
                                                const std::string& dataFolder) {
    using Platform::DynamicLibrary;
    const char sep = Platform::pathSeparator();
    NoiseModelLocation location;
    for (const char* base : {"deepfilter", "df"}) {
        if (!moduleFolder.empty()) {
            location.libraryCandidates.push_back(moduleFolder + sep +
                                                 DynamicLibrary::platformFileName(base));
        }
    }
    for (const char* base : {"deepfilter", "df"}) {
        location.libraryCandidates.push_back(DynamicLibrary::platformFileName(base));
    }
    if (!dataFolder.empty()) {
        location.modelPath = dataFolder + sep + "models" + sep + "DeepFilterNet3_onnx.tar.gz";
    }
    return location;
}

} // namespace Lumora
