// Who stands between the system and the host's delegates.

// A toolchain for Swift on Linux builds the package without Foundation.
#if __has_include(<UIKit/UIKit.h>)

#include "Private/IntegrationReport.h"

#include "Private/Ownership.h"

@implementation ZIBIntegrationFunction

@synthesize image = _image;
@synthesize symbol = _symbol;

- (instancetype)initWithFunction:(const zib_integration_function *)function {
  self = [super init];
  if (self != nil) {
    _image = ZIB_OWNED(ZIBString(function->image));
    _symbol = ZIB_OWNED(ZIBString(function->symbol));
  }
  return self;
}

#if !__has_feature(objc_arc)
- (void)dealloc {
  [_image release];
  [_symbol release];
  [super dealloc];
}
#endif

@end

static NSArray<ZIBIntegrationFunction *> *chainOf(const zib_integration_report *report, size_t row,
                                                  size_t count) {
  NSMutableArray<ZIBIntegrationFunction *> *const chain = [NSMutableArray array];
  for (size_t index = 0; index < count; ++index) {
    zib_integration_function function = {.size = sizeof function};
    if (!zib_integration_report_get_function(report, row, index, &function)) continue;
    ZIBIntegrationFunction *const made = [ZIBIntegrationFunction alloc];
    [chain addObject:ZIB_AUTORELEASED([made initWithFunction:&function])];
  }
  return chain;
}

static NSArray<NSString *> *remarksOf(const zib_integration_report *report, size_t row,
                                      size_t count) {
  NSMutableArray<NSString *> *const remarks = [NSMutableArray array];
  for (size_t index = 0; index < count; ++index) {
    NSString *const remark = ZIBString(zib_integration_report_remark(report, row, index));
    if (remark != nil) [remarks addObject:remark];
  }
  return remarks;
}

@implementation ZIBIntegrationRow

@synthesize method = _method;
@synthesize delegateClass = _delegateClass;
@synthesize state = _state;
@synthesize chain = _chain;
@synthesize remarks = _remarks;

- (instancetype)initWithReport:(const zib_integration_report *)report row:(size_t)index {
  self = [super init];
  if (self != nil) {
    zib_integration_row row = {.size = sizeof row};
    zib_integration_report_get_row(report, index, &row);
    _method = ZIB_OWNED(ZIBString(row.method));
    _delegateClass = ZIB_OWNED(ZIBString(row.delegate_class));
    _state = (ZIBIntegrationState)row.state;
    _chain = ZIB_OWNED(chainOf(report, index, row.function_count));
    _remarks = ZIB_OWNED(remarksOf(report, index, row.remark_count));
  }
  return self;
}

#if !__has_feature(objc_arc)
- (void)dealloc {
  [_method release];
  [_delegateClass release];
  [_chain release];
  [_remarks release];
  [super dealloc];
}
#endif

@end

@implementation ZIBIntegrationReport

@synthesize rows = _rows;
@synthesize text = _text;

- (instancetype)initWithReport:(const zib_integration_report *)report {
  self = [super init];
  if (self != nil) {
    NSMutableArray<ZIBIntegrationRow *> *const rows = [NSMutableArray array];
    const size_t count = zib_integration_report_row_count(report);
    for (size_t index = 0; index < count; ++index) {
      ZIBIntegrationRow *const made = [ZIBIntegrationRow alloc];
      [rows addObject:ZIB_AUTORELEASED([made initWithReport:report row:index])];
    }
    _rows = ZIB_OWNED(rows);
    _text = ZIB_OWNED(ZIBString(zib_integration_report_text(report)));
  }
  return self;
}

#if !__has_feature(objc_arc)
- (void)dealloc {
  [_rows release];
  [_text release];
  [super dealloc];
}
#endif

@end

ZIBIntegrationReport *ZIBMakeIntegrationReport(void) {
  zib_integration_report *const report = zib_integration_report_create();
  ZIBIntegrationReport *const made = [ZIBIntegrationReport alloc];
  ZIBIntegrationReport *const result = ZIB_AUTORELEASED([made initWithReport:report]);
  zib_integration_report_free(report);
  return result;
}

#endif
