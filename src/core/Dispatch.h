// The road from a request's target to its page.
#pragma once

#include "core/site/RequestGrammar.h"
#include "core/site/Response.h"

namespace pixmora {

/// Calls the page operation of the target. @throws RunTimeError MethodNotFound for an unknown name,
/// WrongNumberOfArguments when the operation takes a query and there is none or the reverse, ObjectNotSet while the
/// website is stopped, and whatever the operation raises
void CallOperation(const Connection &socket, const Target &target);

/// Looks the login up and answers with its cookies, or with the login page again.
/// @throws RunTimeError as ParseLoginForm, SyntaxError for a quote character in the name or password
void AnswerLogin(const Connection &socket, std::string_view request);

}  // namespace pixmora
