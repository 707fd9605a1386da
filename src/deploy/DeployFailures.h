#pragma once

#include "deploy/DeployFailure.h"
#include "deploy/server/SendFailure.h"

// A person has to decide about the server's identity, or about its protection.
bool IsServerDoubt(const SendFailure& failure);

DeployFailure DescribeFailure(const SendFailure& failure);
