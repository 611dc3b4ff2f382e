// Animated GIF pictures kept as resources of type "GIF": loaded through GDI+, drawn on demand and
// stepped through their frames by a thread of their own. A handle is opaque; each one starts GDI+
// for itself and shuts it down when destroyed. Unlike most of the library, these calls return 0
// for success.
//
// Typical use: load; get the size; start the animation with the window and the rectangle where
// the picture stands; call GIFDraw from the window's WM_PAINT; pause and resume as the picture
// is hidden and shown; destroy.
#pragma once
#include "kvkit_api.h"

// A picture from the resource `name` (a string or MAKEINTRESOURCE number) of type "GIF" in
// `module`, or in the session's resource module when `module` is null. Null when both are null,
// when the resource is missing or cannot be decoded, or when GDI+ cannot be started.
KVKIT_API void* KVKIT_CALL GIFLoad(KVSESSION* session, const wchar_t* name, HINSTANCE module);
// Loading from a file is not offered: always null, whatever the path.
KVKIT_API void* KVKIT_CALL GIFLoadFromFile(wchar_t* path, int flag);

// Draws the current frame at its own size at the top left corner of the picture's rectangle
// ((0, 0) until an animation is started); `at` is not used. Drawing lets the animation go on to
// the next frame. 0 on success; 1 for a null handle or when GDI+ cannot draw on the DC.
KVKIT_API int KVKIT_CALL GIFDraw(void* gif, HDC dc, POINT* at);
// The picture's width and height. 0 on success; 1 for a null handle or size.
KVKIT_API int KVKIT_CALL GIFGetSize(void* gif, SIZE* size);

// Remembers the window to invalidate and the picture's rectangle in it, and starts the animation
// thread when the picture has two frames or more and no thread runs yet. Each step invalidates
// (left, top, image width, image height) of the rectangle, right and bottom being the image size
// itself, then waits for the window to draw the new frame and for the delay of the frame shown
// after it. 1 when animating, when a still picture needs no thread, and for a null handle.
KVKIT_API int KVKIT_CALL GIFStartAnimation(void* gif, HWND window, RECT rc);
// Holds the animation on its frame (`pause` true) or lets it go on; pausing twice and resuming
// once resumes. Nothing happens to a still picture. 0; 1 for a null handle.
KVKIT_API int KVKIT_CALL GIFPauseAnimation(void* gif, bool pause);
// Selects the next frame (after the last comes frame 0) and returns the delay of the frame that
// will be shown after it, in milliseconds. -1 for a null handle, or when the picture's frame
// lock could not be taken within 25 seconds (nothing changes then).
KVKIT_API int KVKIT_CALL GIFNextFrame(void* gif);
// Ends the animation thread (waiting for it), frees the picture and shuts its GDI+ down. Null is
// accepted.
KVKIT_API void KVKIT_CALL GIFDestroy(void* gif);
