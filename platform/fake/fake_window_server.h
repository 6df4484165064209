// A recording window server: a typed transcript of the calls, scripted failures, and what is registered.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/window_server.h"

namespace pintle {

class FakeWindowServer : public WindowServer {
  public:
    struct Call {
        WindowServerFunction function;
        std::string identifier;
        RegistrationPurpose purpose = RegistrationPurpose::theme;
        friend bool operator==(const Call&, const Call&) = default;
    };

    bool provides(WindowServerFunction function) override { return !missing.contains(function); }
    ConnectionId mainConnectionID() override {
        calls.push_back({WindowServerFunction::mainConnectionID, ""});
        return connection;
    }
    RegistrationAnswer registerCursorWithImages(ConnectionId from, const RegisteredCursor& cursor,
                                                RegistrationPurpose purpose) override {
        calls.push_back({WindowServerFunction::registerCursorWithImages, cursor.identifier, purpose});
        connectionsUsed.insert(from);
        if (unusable.contains(cursor.identifier)) return kRegistrationSkipped;
        const auto failure = registerErrors.find(cursor.identifier);
        if (failure != registerErrors.end()) return failure->second;
        registrations.push_back(cursor);
        registered.insert_or_assign(cursor.identifier, cursor);
        purposes[cursor.identifier] = purpose;
        return 0;
    }
    int coreCursorUnregisterAll(ConnectionId from) override {
        calls.push_back({WindowServerFunction::coreCursorUnregisterAll, ""});
        connectionsUsed.insert(from);
        registered.clear();
        purposes.clear();
        return unregisterError;
    }
    CopiedCursor copyRegisteredCursorImages(ConnectionId from, const std::string& identifier) override {
        calls.push_back({WindowServerFunction::copyRegisteredCursorImages, identifier});
        connectionsUsed.insert(from);
        const auto found = desktopCursors.find(identifier);
        if (found == desktopCursors.end()) return {copyError, {}};
        return {0, found->second};
    }
    void flush() override { ++flushes; }

    /// The identifiers of the transcript's registrations, in order.
    std::vector<std::string> registeredIdentifiers() const {
        std::vector<std::string> names;
        for (const auto& call : calls)
            if (call.function == WindowServerFunction::registerCursorWithImages)
                names.push_back(call.identifier);
        return names;
    }
    std::size_t count(WindowServerFunction function) const {
        std::size_t found = 0;
        for (const auto& call : calls)
            if (call.function == function) ++found;
        return found;
    }

    ConnectionId connection = 77;
    std::set<WindowServerFunction> missing;
    std::map<std::string, int> registerErrors;
    /// The identifiers whose images this platform cannot use; their registrations are skipped.
    std::set<std::string> unusable;
    int unregisterError = 0;
    /// Answered for an identifier that desktopCursors lacks.
    int copyError = 1000;
    /// What copyRegisteredCursorImages answers.
    std::map<std::string, RegisteredCursor> desktopCursors;

    std::vector<Call> calls;
    /// Every successful registration in order.
    std::vector<RegisteredCursor> registrations;
    /// What is in force now.
    std::map<std::string, RegisteredCursor> registered;
    std::map<std::string, RegistrationPurpose> purposes;
    std::set<ConnectionId> connectionsUsed;
    int flushes = 0;
};

}  // namespace pintle
