// SPDX-License-Identifier: MIT
#include "export/drive/ui/run_helper.h"

#include <wx/log.h>
#include <wx/utils.h>

#include "files/file_util_ex.h"
#include "files/start_program.h"

namespace {

wxEnvVariableHashMap UsersVariables() {
    wxEnvVariableHashMap variables;
    for (const std::string& variable : UsersEnvironment()) {
        const std::size_t equals = variable.find('=');
        if (equals != variable.npos)
            variables[file_util_ex::PathFromBytes(variable.substr(0, equals))] =
                wxString(file_util_ex::PathFromBytes(variable.substr(equals + 1)));
    }
    return variables;
}

}  // namespace

void RunHelper(const std::wstring& commandLine) {
    wxExecuteEnv environment;
    environment.env = UsersVariables();
    wxArrayString output, errors;  // captured, so that they do not go to our own
    const wxLogNull quiet;
    (void)wxExecute(commandLine, output, errors, wxEXEC_NODISABLE, &environment);
}
