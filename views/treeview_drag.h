// The process-wide tree drag flag. Internal.
#pragma once

// Non-zero while a tree item is being dragged: set when the drag begins and cleared when it ends,
// by the tree drag handlers only. Copying, moving and finding tree items by value refuse to work
// meanwhile, since the item under the mouse is the one being dragged.
extern int g_treeDragging;
