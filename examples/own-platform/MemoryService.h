#ifndef MEMORYSERVICE_H
#define MEMORYSERVICE_H

#include <list>
#include <map>
#include <string>
#include <utility>

#include "DataAccessServiceIfc.h"

/// A data access service that keeps the journal in memory: one list of entries for each schema, in order of their first
/// writing.
class MemoryService : public DataAccessServiceIfc {
public:
    /// Writes, deletes or reads, as the request says, and answers with what became of it.
    std::string processRequest(const std::string& request) override;

private:
    typedef std::pair<std::string, std::string> StoredEntry;  ///< Unique id and body.
    typedef std::list<StoredEntry> Table;

    /// Returns the entry's id, which may be a new one.
    std::string write(Table& table, const std::string& body);
    static std::string read(const Table& table);

    std::map<std::string, Table> tables_;
    int lastId_ = 0;
};

#endif
