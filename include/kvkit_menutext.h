// Menu item texts as a user reads them: without the "&" that marks the mnemonic ("&&" stands for
// one "&") and without the accelerator part that follows a tab (or the older "\b" right-align
// marker), so "Save &as...\tCtrl+Shift+S" reads "Save as...".
#pragma once
#include "kvkit_api.h"

// The text of an item of `menu` (or of one of its submenus when found by command): `flags` is
// MF_BYCOMMAND (0), where `item` is the command identifier, or MF_BYPOSITION, where it is the
// zero-based position. With a `buffer` the text goes there, cut to `capacity` - 1 characters and
// terminated, and `buffer` is returned. Without one the whole text goes into a new kvtext buffer
// that the caller frees with FreeMemory. Null for a null or destroyed menu, no such item, an item
// without text (separator, bitmap, owner-drawn), a buffer with a capacity below 1, or when memory
// runs out.
KVKIT_API wchar_t* KVKIT_CALL GetMenuText(HMENU menu, UINT item, UINT flags, wchar_t* buffer,
                                          int capacity);
