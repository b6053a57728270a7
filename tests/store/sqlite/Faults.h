#pragma once

#include <atomic>
#include <climits>

/// Faults of the disk under SQLite, and what was asked of it.
struct Disk {
    std::atomic<int> syncs{0};  ///< How often files were synchronised.
    int syncError = 0;          ///< errno of every further synchronisation; 0: it works.
    int writeError = 0;         ///< errno of writes; 0: they work.
    int writesLeft = 0;         ///< How many still work before writeError.
    int errorsLeft = INT_MAX;   ///< How many fail then; those behind work again.
    int failedOperations = 0;
};

extern Disk disk;

/// Puts the disk above under the SQLite of this process.
void installFaultyDisk();

/// Has everything work again; the syncs are still counted.
void repairDisk();
