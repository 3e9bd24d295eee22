#import "PlayedObjects.h"

NS_ASSUME_NONNULL_BEGIN

@interface ZIBPlayedContent : NSObject
@property(nonatomic, copy) NSDictionary *userInfo;
@end
@implementation ZIBPlayedContent
@end

@interface ZIBPlayedRequest : NSObject
@property(nonatomic, strong) ZIBPlayedContent *content;
@end
@implementation ZIBPlayedRequest
@end

@interface ZIBPlayedNotification : NSObject
@property(nonatomic, strong) ZIBPlayedRequest *request;
@end
@implementation ZIBPlayedNotification
@end

@interface ZIBPlayedResponse : NSObject
@property(nonatomic, strong) UNNotification *notification;
@property(nonatomic, copy) NSString *actionIdentifier;
@end
@implementation ZIBPlayedResponse
@end

UNNotification *PlayedNotification(NSDictionary *userInfo) {
  ZIBPlayedContent *const content = [[ZIBPlayedContent alloc] init];
  content.userInfo = userInfo;
  ZIBPlayedRequest *const request = [[ZIBPlayedRequest alloc] init];
  request.content = content;
  ZIBPlayedNotification *const notification = [[ZIBPlayedNotification alloc] init];
  notification.request = request;
  return (UNNotification *)notification;
}

UNNotificationResponse *PlayedResponse(NSDictionary *userInfo, NSString *actionIdentifier) {
  ZIBPlayedResponse *const response = [[ZIBPlayedResponse alloc] init];
  response.notification = PlayedNotification(userInfo);
  response.actionIdentifier = actionIdentifier;
  return (UNNotificationResponse *)response;
}

NS_ASSUME_NONNULL_END
