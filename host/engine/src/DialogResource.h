// Dialog resources: Contents/Resources/Dialogs/<id>.xml in a plug-in's bundle,
//   <dialog id="20256"><item id="1" kind="button" label="20256,1" group="actions"/>...</dialog>
// with kinds button, radio, checkbox, number, text and label. Labels are keys into the
// bundle's strings table.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "DialogScript.h"

namespace scribo::engine {

// The controls of the resource, labels localised, values 0, texts empty; `title`, when given,
// receives the localised title. Nullopt (and a message on standard error for a malformed file)
// when the resource cannot be used.
std::optional<std::vector<DialogControl>>
LoadDialogResource(const std::string& bundle, int resource, std::string* title = nullptr);

} // namespace scribo::engine
