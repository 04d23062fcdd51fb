#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"

namespace {

constexpr int kNoError = 1;

}  // namespace

BASEApiMethodReturn::BASEApiMethodReturn() : BASEApiMethodReturn(true, nullptr) {}

BASEApiMethodReturn::BASEApiMethodReturn(bool successful, BASEApiMethod* owned)
    : BASEApiMethodReturn(successful, kNoError, "", "", "", owned) {}

BASEApiMethodReturn::BASEApiMethodReturn(bool successful, int errorState, const std::string& error,
                                         const std::string& localizedError, const std::string& errorDetail,
                                         BASEApiMethod* owned)
    : method(owned) {
    SetSuccessful(successful);
    SetErrorCode(errorState);
    SetError(error);
    SetLocalizedError(localizedError);
    SetErrorDetail(errorDetail);
}

std::string BASEApiMethodReturn::ReturnXml(int /*encoding*/) const {
    return {};
}

void BASEApiMethodReturn::AppendReturnXml(std::string& document, int encoding) const {
    document += ReturnXml(encoding);
}

std::string BASEApiMethodReturn::GenerateResponseXml(int encoding) {
    SetReturnObjectEncode(encoding);
    std::string document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<lumapi>";
    AppendXml(document);
    AppendReturnXml(document, encoding);
    document += "</lumapi>";
    return document;
}

void BASEApiMethodReturn::ToStream(std::ostream& stream) const {
    stream << "success=" << GetSuccessful() << '\n';
    if (!GetSuccessful())
        stream << "error code=" << GetErrorState() << '\n' << "error message=" << GetError() << '\n';
    if (method)
        stream << "method name=" << method->GetCommandName() << '\n'
               << "object name=" << method->GetObjectName() << '\n';
}
