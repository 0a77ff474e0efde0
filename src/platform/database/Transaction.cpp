// Database.h: changes that happen together or not at all, and reads under one lock.
#include <string>

#include "platform/database/Database.h"
#include "platform/database/DatabaseEngine.h"

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

ReadScope::ReadScope(Database &database) : database_(database) {
    DatabaseEngine &engine = *database_.engine_;
    if (engine.TransactionDepth == 0) Run(engine, "BEGIN");
    ++engine.TransactionDepth;
}

ReadScope::~ReadScope() {
    DatabaseEngine &engine = *database_.engine_;
    --engine.TransactionDepth;
    // After some failures the engine has ended it by itself.
    if (engine.TransactionDepth > 0 || sqlite3_get_autocommit(engine.Handle()) != 0) return;
    sqlite3_exec(engine.Handle(), "COMMIT", nullptr, nullptr, nullptr);
}

}  // namespace pixmora
