// Changes that happen together or not at all.
#include <string>

#include "platform/Database.h"
#include "platform/DatabaseEngine.h"

namespace pixmora {

namespace {

void Run(DatabaseEngine &engine, const std::string &sql) {
    PreparedStatement(engine, sql).Step();
}

}  // namespace

Transaction::Transaction(Database &database) : database_(database) {
    DatabaseEngine &engine = *database_.engine_;
    // The write lock is taken at once: a wait for it later could not be repeated.
    Run(engine, engine.TransactionDepth == 0 ? "BEGIN IMMEDIATE" : "SAVEPOINT inner_scope");
    ++engine.TransactionDepth;
}

Transaction::~Transaction() {
    if (done_) return;
    DatabaseEngine &engine = *database_.engine_;
    --engine.TransactionDepth;
    engine.ForgetTables();
    // After some failures, as a full disk, the engine has rolled back by itself and there is nothing left to undo.
    if (sqlite3_get_autocommit(engine.Handle()) != 0) return;
    const char *undo = engine.TransactionDepth == 0 ? "ROLLBACK" : "ROLLBACK TO inner_scope; RELEASE inner_scope";
    sqlite3_exec(engine.Handle(), undo, nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
    DatabaseEngine &engine = *database_.engine_;
    Run(engine, engine.TransactionDepth == 1 ? "COMMIT" : "RELEASE inner_scope");
    --engine.TransactionDepth;
    done_ = true;
}

}  // namespace pixmora
