// Property sheets built from parallel arrays of page procedures, templates, parameters and
// visibility, with the caption's help button removed, the tabs kept on one line and
// Alt+mnemonic selecting the page whose title carries that mnemonic, on request.
#pragma once
#include "kvkit_api.h"

// Runs a property sheet of the visible pages (all pages without `visible`): page i comes from
// template templates[i] (a 16-bit identifier) of `instance` with procedure procs[i] and parameter
// params[0] when `oneParam` is non-zero, else params[i] (0 without `params`). `flags` are the
// sheet header's, 0 for PSH_PROPTITLE | PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW; the page array is
// always handed over as PSH_PROPSHEETPAGE. `startPage` counts visible pages. With `noHelp` the
// caption has no help button; with `mnemonics` Alt+character selects pages until
// KxEndPropertySheet (a modal sheet's hook goes at the latest when this call returns); with
// either, the tabs stay on one line. Returns PropertySheetW's result, or 0 without a sheet when
// pageCount < 1, `procs` or `templates` is null, no page is visible or memory runs out.
KVKIT_API INT_PTR KVKIT_CALL KxCreatePropertySheet(HWND owner, HINSTANCE instance, DLGPROC* procs,
                                                   int* templates, int oneParam, long* params,
                                                   int pageCount, wchar_t* caption,
                                                   unsigned int startPage, unsigned long flags,
                                                   int noHelp, int mnemonics,
                                                   unsigned char* visible);
// Removes the mnemonic hook of `sheet`; the application calls it when the sheet closes. 1 if the
// hook was removed, 0 when that sheet has none.
KVKIT_API int KVKIT_CALL KxEndPropertySheet(HWND sheet);
// The sheet callback (PSCB_PRECREATE, PSCB_INITIALIZED) and the WH_GETMESSAGE hook.
KVKIT_API int KVKIT_CALL KxPropSheetProc(HWND sheet, UINT message, LPARAM lParam);
KVKIT_API LRESULT KVKIT_CALL KxPropSheetHook(int code, WPARAM wParam, LPARAM lParam);
