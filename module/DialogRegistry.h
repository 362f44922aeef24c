#pragma once

namespace Lumora {

class FilterEngine;

// At most one dialog per filter instance, remembered through a guarded pointer so
// a dialog the user closed (and Qt deleted) counts as absent. UI thread only.

// Shows, raises and activates the instance's dialog, creating it when it is gone.
void openDialogFor(FilterEngine* engine);

// Called before the instance is freed: the dialog lets go of the engine, stops its
// timers and is deleted later; the entry is erased in every case. UI thread only.
void closeDialogFor(FilterEngine* engine);

// Closes the instance's dialog and then runs `release` (which frees the engine).
// libobs may destroy a filter on a thread of its own; the dialog lives on the
// interface thread and may be reading the engine there, so in that case both
// steps are posted to the interface thread and happen there, in this order.
void closeDialogThenRelease(FilterEngine* engine, void (*release)(FilterEngine*));

// Whether a live dialog exists for the instance (for tests).
bool hasDialogFor(FilterEngine* engine);

} // namespace Lumora
