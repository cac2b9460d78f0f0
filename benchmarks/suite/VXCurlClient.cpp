#include "VXCurlClient.h"

#include <curl/curl.h>

namespace {

constexpr int patience = 60'000; // milliseconds

size_t append(char* theBytes, size_t theSize, size_t theCount, void* theBody)
{
    static_cast<QByteArray*>(theBody)->append(theBytes, static_cast<qsizetype>(theSize * theCount));
    return theSize * theCount;
}

} // namespace

VXCurlClient::VXCurlClient(Interface theInterface, const QString& theAuthorityFile)
    : myInterface(theInterface)
    , myEasy(curl_easy_init())
    , myMulti(curl_multi_init())
{
    curl_easy_setopt(myEasy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(myEasy, CURLOPT_NOPROXY, "*");
    curl_easy_setopt(myEasy, CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(myEasy, CURLOPT_BUFFERSIZE, 512L * 1024);
    curl_easy_setopt(myEasy, CURLOPT_CAINFO, theAuthorityFile.toLocal8Bit().constData());
}

VXCurlClient::~VXCurlClient()
{
    curl_easy_cleanup(myEasy);
    curl_multi_cleanup(myMulti);
}

QByteArray VXCurlClient::get(const QUrl& theUrl)
{
    QByteArray body;
    curl_easy_setopt(myEasy, CURLOPT_URL, theUrl.toEncoded().constData());
    curl_easy_setopt(myEasy, CURLOPT_WRITEDATA, &body);
    const bool isDone =
        myInterface == Interface::Multi ? performMulti() : curl_easy_perform(myEasy) == CURLE_OK;
    return isDone ? body : QByteArray();
}

bool VXCurlClient::performMulti()
{
    curl_multi_add_handle(myMulti, myEasy);
    int running = 1;
    while (curl_multi_perform(myMulti, &running) == CURLM_OK && running > 0)
        curl_multi_poll(myMulti, nullptr, 0, patience, nullptr);
    int left = 0;
    const CURLMsg* const message = curl_multi_info_read(myMulti, &left);
    const bool isDone = message && message->data.result == CURLE_OK;
    curl_multi_remove_handle(myMulti, myEasy);
    return isDone;
}
