#ifndef SDP_DIALOG_H
#define SDP_DIALOG_H

// The offer/answer state of a dialog.

#endif
