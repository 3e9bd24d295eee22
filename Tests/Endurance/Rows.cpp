#include "Tests/Endurance/Rows.h"

namespace endurance {

std::vector<std::string>& calls() {
  static std::vector<std::string> calls;
  return calls;
}

void note(const char* role, std::size_t number, SEL command) {
  // After an exchange the host's method is called with the other swizzler's selector, unless the
  // module is between them: it calls the host with the host's own. So that one counts as the same.
  std::string selector = zib::objc::nameOfSelector(command);
  if (selector.starts_with("swizzler")) selector.erase(0, selector.find('_') + 1);
  calls().push_back(role + std::to_string(number) + " " + selector);
}

zib::Selector selectorOf(std::size_t row) { return zib::Selector(rows()[row].selector); }

const std::array<Row, rowCount>& rows() {
  using Tell = void(id, SEL, id, id);
  using Ask = BOOL(id, SEL, id, id, id);
  using Complete = void(id, SEL, id, id, BlockLayout*);
  constexpr auto all = std::make_index_sequence<roles>();
  static const std::array<Row, rowCount> rows{
      makeRow<Answers::no, deviceToken, Tell>(
          "application:didRegisterForRemoteNotificationsWithDeviceToken:", all),
      makeRow<Answers::no, registrationFailure, Tell>(
          "application:didFailToRegisterForRemoteNotificationsWithError:", all),
      makeRow<Answers::result, openURL, Ask>("application:openURL:options:", all),
      makeRow<Answers::no, openURLContexts, Tell>("scene:openURLContexts:", all),
      makeRow<Answers::options, present, Complete>(
          "userNotificationCenter:willPresentNotification:withCompletionHandler:", all),
      makeRow<Answers::completion, respond, Complete>(
          "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:", all),
      makeRow<Answers::no, fcmToken, Tell>("messaging:didReceiveRegistrationToken:", all)};
  return rows;
}

}  // namespace endurance
