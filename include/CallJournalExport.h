#ifndef CALLJOURNAL_CALLJOURNALEXPORT_H
#define CALLJOURNAL_CALLJOURNALEXPORT_H

/// Marks what the shared library offers; everything else in it stays hidden.
#if defined(__GNUC__)
#define CALLJOURNAL_EXPORT __attribute__((visibility("default")))
#else
#define CALLJOURNAL_EXPORT
#endif

#endif
