// Shows the update checker's answers to the user on this desktop. Made by the root; main thread only.
#pragma once

#include "platform/alerts.h"
#include "platform/application.h"
#include "settings/update_checker.h"

namespace pintle {

class UpdateAnswers : public UpdateChecker::Mediator {
  public:
    UpdateAnswers(Application& application, Alerts& alerts) : application_(application), alerts_(alerts) {}

    void activateIgnoringOtherApps() override { application_.activateIgnoringOtherApps(); }
    void runAlert(const UpdateAlert& alert, std::function<void(int button)> answered) override {
        alerts_.runModal({AlertStyle::informational, alert.message, alert.informativeText, alert.buttons},
                         std::move(answered));
    }
    void openUrl(const std::string& url) override { application_.openUrl(url); }

  private:
    Application& application_;
    Alerts& alerts_;
};

}  // namespace pintle
