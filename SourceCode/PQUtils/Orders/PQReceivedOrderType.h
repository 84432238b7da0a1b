#pragma once

#include <span>

#include "PQDebug/Resources/PQConst.h"

namespace PQ_UTILS {

// The actions of orders, by which the other side dispatches them (the text
// after "action=" in order text): 184 names, table identifier 68. Each
// ROW(name, value) gives the enumerator PQReceivedOrderType_<name> and the
// name "<name>", spelled as the plug-ins and page scripts spell it. The
// declaration order is not the numeric order; late additions carry a digit
// appended to a neighbour's value (valueDescriptionsForAutoFill is 8701).
// clang-format off
#define PQ_RECEIVED_ORDER_TYPE_ROWS(ROW)                       \
    ROW(NO_TYPE, -1)                                           \
    ROW(forwardMessageFromPluginToPlugin, 11)                  \
    ROW(event, 12)                                             \
    ROW(askLogin, 13)                                          \
    ROW(askLoginPopup, 16)                                     \
    ROW(openApplicationVorda, 15)                              \
    ROW(DOMInformations, 17)                                   \
    ROW(signalCssDOMInformations, 18)                          \
    ROW(signalAjaxDOMInformations, 19)                         \
    ROW(signalNewDOMInformations, 20)                          \
    ROW(documentComplete, 21)                                  \
    ROW(getGlobalData, 31)                                     \
    ROW(getServiceData, 32)                                    \
    ROW(applicationUserEvent, 33)                              \
    ROW(controlServiceBecomeKey, 34)                           \
    ROW(controlServiceResignKey, 35)                           \
    ROW(controlChangeTab, 36)                                  \
    ROW(meaningDataRequest, 51)                                \
    ROW(askForOpenFeedbackWindow, 52)                          \
    ROW(signalStructurePerformance, 53)                        \
    ROW(browserMessage, 65)                                    \
    ROW(deviceMessage, 66)                                     \
    ROW(signalScreenshot, 68)                                  \
    ROW(signalScreenshotDataUri, 71)                           \
    ROW(signalLastScreenshotDataUri, 73)                       \
    ROW(signalWaitingScreenshot, 72)                           \
    ROW(signalXPathListForBasket, 69)                          \
    ROW(autoFillForm, 83)                                      \
    ROW(saveFormData, 84)                                      \
    ROW(getDescriptionsForAutoFill, 85)                        \
    ROW(focusDescriptionsForAutoFill, 86)                      \
    ROW(blurDescriptionsForAutoFill, 87)                       \
    ROW(valueDescriptionsForAutoFill, 8701)                    \
    ROW(signalAutofillDone, 88)                                \
    ROW(askForPasswordConfirmation, 92)                        \
    ROW(askWebAppAuthStatus, 93)                               \
    ROW(webAppAuthStatus, 94)                                  \
    ROW(switchBrowserMode, 95)                                 \
    ROW(signalWebOnboardingStarted, 97)                        \
    ROW(signalSearchQueryForLog, 96)                           \
    ROW(changeDefaultAndAutoFillForm, 89)                      \
    ROW(eventOnOutFired, 90)                                   \
    ROW(eventOnLogoutFired, 91)                                \
    ROW(learningToolbarMessage, 101)                           \
    ROW(learningData, 103)                                     \
    ROW(PLUGIN_CONNECTION, 111)                                \
    ROW(SERVER_CONNECTION, 112)                                \
    ROW(TEST_IF_SERVER_EXISTS, 113)                            \
    ROW(signalDataHasChanged, 121)                             \
    ROW(banishUrlForAutoLogin, 122)                            \
    ROW(registerUrlForAutoLogin, 123)                          \
    ROW(removeBanishedUrlForAutoLogin, 124)                    \
    ROW(removeRegisteredUrlForAutoLogin, 125)                  \
    ROW(signalLogsLevels, 126)                                 \
    ROW(signalChangeLogLevel, 127)                             \
    ROW(signalSecuredDataAccessAuthorization, 129)             \
    ROW(securedDataAccessResponse, 130)                        \
    ROW(editSecuredDataAccessPolicy, 131)                      \
    ROW(signalGeneratedWebCard, 132)                           \
    ROW(signalCoupons, 133)                                    \
    ROW(askForAutofillGeneratedPassword, 1281)                 \
    ROW(askForDataRefresh, 141)                                \
    ROW(dataRefreshResponse, 142)                              \
    ROW(askForHttpServerInfo, 143)                             \
    ROW(httpServerInfoResponse, 144)                           \
    ROW(authenticationStatus, 145)                             \
    ROW(authenticationLogin, 146)                              \
    ROW(authenticationActualLogin, 1461)                       \
    ROW(authenticationLogout, 147)                             \
    ROW(authenticationStatusResponse, 148)                     \
    ROW(authenticationStatusResponseBis, 1481)                 \
    ROW(signalBasketInformation, 149)                          \
    ROW(getLogsLevels, 150)                                    \
    ROW(askForChangeLogLevel, 151)                             \
    ROW(askForOpenCredential, 170)                             \
    ROW(askForEndPopoverGettingStarted, 1702)                  \
    ROW(backupGeneratedPassword, 153)                          \
    ROW(disableTemporaryAutoLogin, 155)                        \
    ROW(signalUsage, 156)                                      \
    ROW(securedDataAccessRequest, 157)                         \
    ROW(sendFeedback, 159)                                     \
    ROW(getMoreCoupons, 160)                                   \
    ROW(getCoupons, 161)                                       \
    ROW(banishDomainForReactivation, 163)                      \
    ROW(askForAddObject, 164)                                  \
    ROW(banishDomainForAddObjects, 165)                        \
    ROW(saveDataAPI, 166)                                      \
    ROW(saveDataCaptured, 167)                                 \
    ROW(saveDataCapturedNeverAsk, 168)                         \
    ROW(saveCredentialsNeverAsk, 1681)                         \
    ROW(askForInviteFriends, 169)                              \
    ROW(passwordSecurityNotification, 1701)                    \
    ROW(askForDisableQuorvane, 1703)                           \
    ROW(askForSaveGeneratePasswordDefaults, 1704)              \
    ROW(askForShowOverlay, 1705)                               \
    ROW(signalSafeSearchActivation, 1706)                      \
    ROW(vordaApplicationResponse, 171)                         \
    ROW(signalVordaInstanceLaunched, 181)                      \
    ROW(forwardedMessageToServer, 191)                         \
    ROW(purchaseMessageFromWebpage, 201)                       \
    ROW(loadUrl, 202)                                          \
    ROW(QuorvaneAPIRequest_getClientVersion, 210)              \
    ROW(QuorvaneAPIRequest_isUserLoggedin, 211)                \
    ROW(QuorvaneAPIRequest_openQuorvaneApplication, 212)       \
    ROW(QuorvaneAPIRequest_userWantsToSaveData, 220)           \
    ROW(QuorvaneAPIRequest_saveDataObjectsResponse, 221)       \
    ROW(QuorvaneAPIRequest_userWantsToSignup, 230)             \
    ROW(QuorvaneAPIRequest_signupRequiredDetailsResponse, 231) \
    ROW(QuorvaneAPIRequest_signupFullDataErrorResponse, 232)   \
    ROW(QuorvaneAPIRequest_signupFullDataSuccessResponse, 233) \
    ROW(QuorvaneAPIRequest_userWantsToCheckout, 240)           \
    ROW(QuorvaneAPIRequest_getUserOnboardingSites, 250)        \
    ROW(QuorvaneAPIRequest_doOnboardingSiteStep, 251)          \
    ROW(QuorvaneAPIRequest_endWebOnboarding, 252)              \
    ROW(QuorvaneAPIRequest_signalOnboardingStep, 253)          \
    ROW(QuorvaneAPIRequest_signalSafeSearchActivation, 254)    \
    ROW(QuorvaneAPIRequest_getSearchData, 255)                 \
    ROW(QuorvaneAPIResponse_getClientVersion, 260)             \
    ROW(QuorvaneAPIResponse_isUserLoggedin, 261)               \
    ROW(QuorvaneAPIResponse_saveDataObjectsRequest, 270)       \
    ROW(QuorvaneAPIResponse_saveDataResponseRequest, 271)      \
    ROW(QuorvaneAPIResponse_signupRequiredDetailsRequest, 280) \
    ROW(QuorvaneAPIResponse_signupFullDataRequest, 281)        \
    ROW(QuorvaneAPIResponse_getUserOnboardingSites, 282)       \
    ROW(QuorvaneAPIResponse_showSearchData, 283)               \
    ROW(popover_signalDataRefresh, 291)                        \
    ROW(popover_signalPasswordGenerated, 292)                  \
    ROW(popover_askForInitialData, 293)                        \
    ROW(popover_askForEndGettingStarted, 2931)                 \
    ROW(popover_askForOpenCredential, 294)                     \
    ROW(popover_askForAutologin, 295)                          \
    ROW(popover_askForGeneratePassword, 296)                   \
    ROW(popover_askForCopyPassword, 297)                       \
    ROW(popover_askForFillPassword, 298)                       \
    ROW(popover_askForGeneratorSaveDefaults, 2980)             \
    ROW(popover_askForDisableOnDomain, 2981)                   \
    ROW(popover_askForDisableOnPage, 2982)                     \
    ROW(popover_askForSaveDataFilled, 2983)                    \
    ROW(popover_askForShowPassword, 2984)                      \
    ROW(popover_askForInviteYourFriends, 299)                  \
    ROW(popover_usageLog, 2932)                                \
    ROW(log, 303)                                              \
    ROW(debugCommand, 304)                                     \
    ROW(logOnline, 305)                                        \
    ROW(meaningDataResponse, 401)                              \
    ROW(displayToolbar, 402)                                   \
    ROW(highlightInputsForAutoComplete, 403)                   \
    ROW(autofillChoiceLayer, 421)                              \
    ROW(signalAuthStatusLoggedout, 404)                        \
    ROW(signalAuthStatusLoggedin, 405)                         \
    ROW(autoLoginStatus, 406)                                  \
    ROW(autoFillStatus, 415)                                   \
    ROW(fillElements, 407)                                     \
    ROW(fillMultipleElements, 431)                             \
    ROW(askForNewDOMInformations, 408)                         \
    ROW(nextStep, 409)                                         \
    ROW(informationChoosen, 411)                               \
    ROW(missingInformation, 412)                               \
    ROW(putEventHandlers, 414)                                 \
    ROW(putEventHandlersOnIns, 420)                            \
    ROW(putEventHandlersOnOutsToWatchForLogout, 423)           \
    ROW(signalElementsToWatchValue, 416)                       \
    ROW(testXPathListForBasket, 417)                           \
    ROW(loadToolbar, 418)                                      \
    ROW(deleteToolbar, 419)                                    \
    ROW(forwardToInjectedJS, 422)                              \
    ROW(confirmBuyProcedure, 424)                              \
    ROW(changeLanguage, 425)                                   \
    ROW(takeScreenshot, 426)                                   \
    ROW(takeScreenshotForLevelOne, 432)                        \
    ROW(startTakingScreenshotsForLevelOne, 433)                \
    ROW(stopTakingScreenshotsForLevelOne, 434)                 \
    ROW(takeScreenshot_bho, 429)                               \
    ROW(setCookiesForCoupons, 427)                             \
    ROW(watchPutputForLog, 428)                                \
    ROW(controlMessageToWebpage, 430)                          \
    ROW(displayOnboardingSuccessOverlay, 435)                  \
    ROW(hideOnboardingSuccessOverlay, 436)                     \
    ROW(showInput, 500)                                        \
    ROW(showFormOnPage, 501)                                   \
    ROW(hideFormOnPage, 502)                                   \
    ROW(launchUnitaryTests, 503)                               \
    ROW(signalJSOrderPerformance, 504)                         \
    ROW(signalContextDebugInfo, 505)
// clang-format on

enum PQReceivedOrderType : int {
#define PQ_RECEIVED_ORDER_TYPE_ENUMERATOR(name, value) PQReceivedOrderType_##name = (value),
    PQ_RECEIVED_ORDER_TYPE_ROWS(PQ_RECEIVED_ORDER_TYPE_ENUMERATOR)
#undef PQ_RECEIVED_ORDER_TYPE_ENUMERATOR
};

// Fills the PQReceivedOrderType table when it is empty, then its reverse. Passed as the
// initialisation function to every lookup, so the table is also built on
// first use.
void initialize_public_PQReceivedOrderType();

// The rows of the table, in declaration order.
[[nodiscard]] std::span<const PQ_DEBUG::PQVocabularyRow<PQReceivedOrderType>>
get_PQReceivedOrderTypeRows();

} // namespace PQ_UTILS
