#ifndef SDP_DOCUMENT_BENCH_MIXED_EDITS_H
#define SDP_DOCUMENT_BENCH_MIXED_EDITS_H

/// Prints what single edits cost that follow each other with questions in between, of bodies of two sizes: the same where
/// the cost of an edit does not depend on the rest of the body.
void printMixedEdits();

#endif
