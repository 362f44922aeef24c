#pragma once

namespace Lumora {

struct ObsFilterState;

// At most one dialog per filter instance, remembered through a guarded pointer so
// a dialog the user closed (and Qt deleted) counts as absent. UI thread only.

// Shows, raises and activates the instance's dialog, creating it when it is gone.
void openDialogFor(ObsFilterState* state);

// Called before the instance is freed: the dialog lets go of the state, stops its
// timers and is deleted later; the entry is erased in every case. UI thread only.
void closeDialogFor(ObsFilterState* state);

// Closes the instance's dialog and then runs `release` (which frees the state).
// libobs may destroy a filter on a thread of its own; the dialog lives on the
// interface thread and may be reading the state there, so in that case both
// steps are posted to the interface thread and happen there, in this order.
void closeDialogThenRelease(ObsFilterState* state, void (*release)(ObsFilterState*));

// Whether a live dialog exists for the instance (for tests).
bool hasDialogFor(ObsFilterState* state);

} // namespace Lumora
