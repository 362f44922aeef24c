#pragma once

#include <string>
#include <vector>

namespace Lumora {

// Where the neural noise suppressor finds the DeepFilterNet library and its
// model. The module fills it in (it knows its own folder and its data folder)
// and hands it to the chain before `prepare`; nothing here is read on the audio
// thread.
struct NoiseModelLocation {
    // Tried in order until one opens and exports the whole C interface: a path
    // (a library beside the module) or a bare file name (the system's search).
    std::vector<std::string> libraryCandidates;
    // The model archive handed to df_create. It must exist and be readable: the
    // library aborts the whole process on a bad path, so it is checked first.
    std::string modelPath;

    // The usual layout: "deepfilter", then "df", first in moduleFolder, then on
    // the system's path; the model at <dataFolder>/models/DeepFilterNet3_onnx.tar.gz.
    // An empty folder leaves its part out.
    static NoiseModelLocation standard(const std::string& moduleFolder,
                                       const std::string& dataFolder);
};

// Why neural noise suppression is or is not running, for the interface.
enum class NoiseSuppressionStatus : int {
    NotPrepared = 0,     // the chain has not been prepared yet
    Available = 1,       // both channels have a model instance
    LibraryMissing = 2,  // no candidate library opened with the whole interface
    ModelMissing = 3,    // the model archive is absent or unreadable
    UnsupportedRate = 4, // the model works at 48 kHz only
    ModelRejected = 5,   // the library refused the model (df_create gave nothing,
                         // or its frame length is not 480)
};

} // namespace Lumora
