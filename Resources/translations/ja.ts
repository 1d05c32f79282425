<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>Your Scheduled job is paused.</source>
        <translation>スケジュールジョブは一時停止しています。</translation>
    </message>
    <message>
        <source>Quota Exceeded - You have utilized the allocated storage space.</source>
        <translation>容量超過 - 割り当てられたストレージ容量をすべて使用しています。</translation>
    </message>
    <message>
        <source>You have exceeded the allocated</source>
        <translation>割り当てられた容量の上限を超え</translation>
    </message>
    <message>
        <source>You have exceeded the</source>
        <translation>割り当てられた容量</translation>
    </message>
    <message>
        <source>Next scheduled backup will start immediately</source>
        <translation>次のスケジュールバックアップはすぐに開始されます</translation>
    </message>
    <message>
        <source>Your next scheduled event: You have no scheduled jobs.</source>
        <translation>次のスケジュール: スケジュールされたジョブはありません。</translation>
    </message>
    <message>
        <source>Backup: %@
Cloud Drive: %@</source>
        <translation>バックアップ: %@
Cloud Drive: %@</translation>
    </message>
    <message>
        <source>Backup: %@
Cloud Drive: %@
You have exceeded the allocated quota limit. For further syncing you have to upgrade your account. Click the &apos;Upgrade Storage&apos; menu item to upgrade your %@ account</source>
        <translation>バックアップ: %@
Cloud Drive: %@
割り当てられた容量の上限を超えました。同期を続けるには、アカウントをアップグレードする必要があります。メニューの「ストレージをアップグレード」をクリックして、%@ アカウントをアップグレードしてください</translation>
    </message>
    <message>
        <source>%@ 
Your account has been cancelled</source>
        <translation>%@ 
お使いのアカウントは解約されました</translation>
    </message>
    <message>
        <source>Cloud Drive: All files are up to date</source>
        <translation>Cloud Drive: すべてのファイルは最新です</translation>
    </message>
    <message>
        <source>Cloud Drive: All files are synced</source>
        <translation>Cloud Drive: すべてのファイルが同期されています</translation>
    </message>
    <message>
        <source>%@ is already running, but it does not answer.</source>
        <translation>%@はすでに実行中ですが、応答がありません。</translation>
    </message>
    <message>
        <source> is up-to-date</source>
        <translation> は最新です</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>No</source>
        <translation>いいえ</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Warning! Backup operations will not work without these permissions. Learn more</source>
        <translation>警告: これらの権限がないとバックアップは実行できません。詳細</translation>
    </message>
    <message>
        <source>Learn more</source>
        <translation>詳細</translation>
    </message>
    <message>
        <source>Start application</source>
        <translation>アプリケーションを起動</translation>
    </message>
    <message>
        <source>Access %@ web</source>
        <translation>%@ の Web にアクセス</translation>
    </message>
    <message>
        <source>Access, Restore, Share files / folders, etc via Web</source>
        <translation>Web でファイルやフォルダへのアクセス、復元、共有などを行います</translation>
    </message>
    <message>
        <source>Scheduler</source>
        <translation>スケジューラ</translation>
    </message>
    <message>
        <source>Upgrade storage</source>
        <translation>ストレージをアップグレード</translation>
    </message>
    <message>
        <source>Upgrade to a higher storage plan</source>
        <translation>容量の大きいプランにアップグレードします</translation>
    </message>
    <message>
        <source>Show progress</source>
        <translation>進行状況を表示</translation>
    </message>
    <message>
        <source>Proxy settings</source>
        <translation>プロキシ設定</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>View logs</source>
        <translation>ログを表示</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>ステータス</translation>
    </message>
    <message>
        <source>Send error report</source>
        <translation>エラーレポートを送信</translation>
    </message>
    <message>
        <source>Online help</source>
        <translation>オンラインヘルプ</translation>
    </message>
    <message>
        <source>Disable Web Access</source>
        <translation>Web アクセスを無効にする</translation>
    </message>
    <message>
        <source>Enable Web Access</source>
        <translation>Web アクセスを有効にする</translation>
    </message>
    <message>
        <source>Manage backup set, Schedule backup etc via Web</source>
        <translation>Web でバックアップセットの管理やバックアップのスケジュール設定などを行います</translation>
    </message>
    <message>
        <source>Continuous Data Protection</source>
        <translation>継続的データ保護</translation>
    </message>
    <message>
        <source>Check for latest version</source>
        <translation>最新バージョンを確認</translation>
    </message>
    <message>
        <source>Update to latest version of application</source>
        <translation>アプリケーションを最新バージョンに更新します</translation>
    </message>
    <message>
        <source>Quit application monitor</source>
        <translation>アプリケーションモニターを終了</translation>
    </message>
    <message>
        <source>Remote Manage</source>
        <translation>リモート管理</translation>
    </message>
    <message>
        <source>Manage all scheduled jobs</source>
        <translation>すべてのスケジュールジョブを管理</translation>
    </message>
    <message>
        <source>Pause the scheduled job</source>
        <translation>スケジュールジョブを一時停止</translation>
    </message>
    <message>
        <source>Resume the scheduled job</source>
        <translation>スケジュールジョブを再開</translation>
    </message>
    <message>
        <source>Stop the scheduled job</source>
        <translation>スケジュールジョブを停止</translation>
    </message>
    <message>
        <source>Disable all scheduled jobs</source>
        <translation>すべてのスケジュールジョブを無効にする</translation>
    </message>
    <message>
        <source>Enable all scheduled jobs</source>
        <translation>すべてのスケジュールジョブを有効にする</translation>
    </message>
    <message>
        <source>Cloud Drive</source>
        <translation>Cloud Drive</translation>
    </message>
    <message>
        <source>My Cloud Drive folder</source>
        <translation>マイ Cloud Drive フォルダ</translation>
    </message>
    <message>
        <source>View your Cloud Drive folder</source>
        <translation>Cloud Drive フォルダを表示します</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>一時停止</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>再開</translation>
    </message>
    <message>
        <source>Recently modified items</source>
        <translation>最近変更した項目</translation>
    </message>
    <message>
        <source>View files that have been recently modified</source>
        <translation>最近変更されたファイルを表示します</translation>
    </message>
    <message>
        <source>Halt the Sync operations</source>
        <translation>同期操作を停止します</translation>
    </message>
    <message>
        <source>Sync files with linked devices</source>
        <translation>リンクされたデバイスとファイルを同期します</translation>
    </message>
    <message>
        <source>Sync Status</source>
        <translation>同期ステータス</translation>
    </message>
    <message>
        <source>Re-initialize</source>
        <translation>再初期化</translation>
    </message>
    <message>
        <source>Scheduled Backup is in progress</source>
        <translation>スケジュールバックアップを実行しています</translation>
    </message>
    <message>
        <source>Scheduled Backup is Paused...</source>
        <translation>スケジュールバックアップは一時停止しています...</translation>
    </message>
    <message>
        <source>Retrying...</source>
        <translation>再試行しています...</translation>
    </message>
    <message>
        <source>Elapsed Time:</source>
        <translation>経過時間:</translation>
    </message>
    <message>
        <source>Estimated Time:</source>
        <translation>推定残り時間:</translation>
    </message>
    <message>
        <source>Pending Files:</source>
        <translation>未処理のファイル:</translation>
    </message>
    <message>
        <source>Completed Files:</source>
        <translation>完了したファイル:</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source> Pause</source>
        <translation> 一時停止</translation>
    </message>
    <message>
        <source> Resume</source>
        <translation> 再開</translation>
    </message>
    <message>
        <source>Bandwidth usage:</source>
        <translation>帯域幅の使用:</translation>
    </message>
    <message>
        <source>Resume backup operation</source>
        <translation>バックアップを再開します</translation>
    </message>
    <message>
        <source>Pause backup operation</source>
        <translation>バックアップを一時停止します</translation>
    </message>
    <message>
        <source>Calculating...</source>
        <translation>計算しています...</translation>
    </message>
    <message>
        <source>Are you sure you wish to stop the scheduled job operation? </source>
        <translation>スケジュールジョブを停止しますか? </translation>
    </message>
    <message>
        <source>Regulates the amount of bandwidth usage during backup operation.</source>
        <translation>バックアップ中に使用する帯域幅を調整します。</translation>
    </message>
    <message>
        <source>You have selected Auto-Pause. This means backups may be very slow during user activity.</source>
        <translation>自動一時停止が選択されています。コンピュータの使用中はバックアップが非常に遅くなることがあります。</translation>
    </message>
    <message>
        <source>All files are up to date</source>
        <translation>すべてのファイルは最新です</translation>
    </message>
    <message>
        <source>Syncing %@</source>
        <translation>%@ を同期しています</translation>
    </message>
    <message>
        <source>Syncing %@ of %@ files</source>
        <translation>ファイルを同期しています (%@/%@)</translation>
    </message>
    <message>
        <source>Syncing %@ of %@ files, %@ left</source>
        <translation>ファイルを同期しています (%@/%@、残り %@)</translation>
    </message>
    <message>
        <source>Syncing %@ of %@ files (%@ of %@)</source>
        <translation>ファイルを同期しています %@/%@ (%@/%@)</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>処理中</translation>
    </message>
    <message>
        <source>Processing %@</source>
        <translation>%@ を処理しています</translation>
    </message>
    <message>
        <source>Processing %@ of %@ files</source>
        <translation>ファイルを処理しています (%@/%@)</translation>
    </message>
    <message>
        <source>Preparing file list...</source>
        <translation>ファイルリストを準備しています...</translation>
    </message>
    <message>
        <source>Backing up</source>
        <translation>バックアップ中</translation>
    </message>
    <message>
        <source>Restoring</source>
        <translation>復元中</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>アップロード中</translation>
    </message>
    <message>
        <source>Uploading %@</source>
        <translation>%@ をアップロードしています</translation>
    </message>
    <message>
        <source>Uploading %@ of %@ files</source>
        <translation>ファイルをアップロードしています (%@/%@)</translation>
    </message>
    <message>
        <source>Uploading %@ (%@ of %@)</source>
        <translation>%@ をアップロードしています (%@/%@)</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>ダウンロード中</translation>
    </message>
    <message>
        <source>Downloading %@</source>
        <translation>%@ をダウンロードしています</translation>
    </message>
    <message>
        <source>Downloading %@ of %@ files</source>
        <translation>ファイルをダウンロードしています (%@/%@)</translation>
    </message>
    <message>
        <source>Downloading %@ (%@ of %@)</source>
        <translation>%@ をダウンロードしています (%@/%@)</translation>
    </message>
    <message>
        <source>Deleting %@</source>
        <translation>%@ を削除しています</translation>
    </message>
    <message>
        <source>Deleting %@ of %@ files</source>
        <translation>ファイルを削除しています (%@/%@)</translation>
    </message>
    <message>
        <source>Renaming %@ to %@</source>
        <translation>%@ の名前を %@ に変更しています</translation>
    </message>
    <message>
        <source>Moving</source>
        <translation>移動中</translation>
    </message>
    <message>
        <source>Moving %@</source>
        <translation>%@ を移動しています</translation>
    </message>
    <message>
        <source>Moving %@ to %@</source>
        <translation>%@ を %@ に移動しています</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>一時停止中</translation>
    </message>
    <message>
        <source>Re-initializing</source>
        <translation>再初期化中</translation>
    </message>
    <message>
        <source>Re-initializing: %@ of %@ files checked</source>
        <translation>再初期化中: ファイルを確認しています (%@/%@)</translation>
    </message>
    <message>
        <source>No network connectivity</source>
        <translation>ネットワークに接続されていません</translation>
    </message>
    <message>
        <source>Connecting to the server...</source>
        <translation>サーバーに接続しています...</translation>
    </message>
    <message>
        <source>Calculating the storage used...</source>
        <translation>ストレージ使用量を計算しています...</translation>
    </message>
    <message>
        <source>You have exceeded the allocated quota limit. For further syncing you have to upgrade your account.</source>
        <translation>割り当てられた容量の上限を超えました。同期を続けるには、アカウントをアップグレードしてください。</translation>
    </message>
    <message>
        <source>You have exceeded the allocated quota limit of %@. For further syncing you have to upgrade your account.</source>
        <translation>割り当てられた容量の上限を超えました (上限: %@)。同期を続けるには、アカウントをアップグレードしてください。</translation>
    </message>
    <message>
        <source>The account has been cancelled</source>
        <translation>アカウントは解約されました</translation>
    </message>
    <message>
        <source>The account is under maintenance. Syncing goes on when it is available again.</source>
        <translation>アカウントはメンテナンス中です。利用可能になると同期が再開されます。</translation>
    </message>
    <message>
        <source>The account has been blocked. Contact support to have it opened again.</source>
        <translation>アカウントがロックされています。解除するにはサポートにお問い合わせください。</translation>
    </message>
    <message>
        <source>The Cloud Drive folder cannot be found</source>
        <translation>Cloud Drive フォルダが見つかりません</translation>
    </message>
    <message>
        <source>The Cloud Drive folder %@ cannot be found</source>
        <translation>Cloud Drive フォルダ %@ が見つかりません</translation>
    </message>
    <message>
        <source>This computer has been unlinked from Cloud Drive</source>
        <translation>このコンピュータと Cloud Drive のリンクが解除されました</translation>
    </message>
    <message>
        <source>Sign in again to go on syncing</source>
        <translation>同期を続けるには、もう一度サインインしてください</translation>
    </message>
    <message>
        <source>Not enough free space on this computer</source>
        <translation>このコンピュータの空き容量が不足しています</translation>
    </message>
    <message>
        <source>Not enough free space on this computer: %@ more needed</source>
        <translation>このコンピュータの空き容量が %@ 不足しています</translation>
    </message>
    <message>
        <source>%@ could not be synced</source>
        <translation>%@ を同期できませんでした</translation>
    </message>
    <message>
        <source>%@ could not be synced: %@</source>
        <translation>%@ を同期できませんでした: %@</translation>
    </message>
    <message>
        <source>%@ is in use and will be synced when it is closed</source>
        <translation>%@ は使用中です。閉じると同期されます</translation>
    </message>
    <message>
        <source>%@ was changed in two places. Both versions have been kept.</source>
        <translation>%@ は 2 か所で変更されました。両方のバージョンが保存されています。</translation>
    </message>
    <message>
        <source>%@ was also changed on %@. Both versions have been kept.</source>
        <translation>%@ は %@ でも変更されました。両方のバージョンが保存されています。</translation>
    </message>
    <message>
        <source>The name of %@ cannot be used on all your computers</source>
        <translation>%@ の名前は、一部のコンピュータでは使用できません</translation>
    </message>
    <message>
        <source>You are not allowed to change %@</source>
        <translation>%@ を変更する権限がありません</translation>
    </message>
    <message>
        <source>Scheduled Backup is in progress.</source>
        <translation>スケジュールバックアップを実行しています。</translation>
    </message>
    <message>
        <source>Scheduled backup is paused.</source>
        <translation>スケジュールバックアップは一時停止しています。</translation>
    </message>
    <message>
        <source>Backup operation is in progress.</source>
        <translation>バックアップを実行しています。</translation>
    </message>
    <message>
        <source>Backup operation is paused.</source>
        <translation>バックアップは一時停止しています。</translation>
    </message>
    <message>
        <source>You have disabled all your scheduled job(s)</source>
        <translation>すべてのスケジュールジョブが無効になっています</translation>
    </message>
    <message>
        <source>Your next scheduled job will start on %@</source>
        <translation>次のスケジュールジョブの開始: %@</translation>
    </message>
    <message>
        <source>Backed up %@ of %@ files</source>
        <translation>ファイルをバックアップしました (%@/%@)</translation>
    </message>
    <message>
        <source>Restored %@ of %@ files</source>
        <translation>ファイルを復元しました (%@/%@)</translation>
    </message>
    <message>
        <source>%@ has been added to your Cloud Drive.</source>
        <translation>%@ が Cloud Drive に追加されました。</translation>
    </message>
    <message>
        <source>%@ and %@ more have been added to your Cloud Drive.</source>
        <translation>%@ ほか %@ 件が Cloud Drive に追加されました。</translation>
    </message>
    <message>
        <source>%@ has been updated in your Cloud Drive.</source>
        <translation>Cloud Drive の %@ が更新されました。</translation>
    </message>
    <message>
        <source>%@ and %@ more have been updated in your Cloud Drive.</source>
        <translation>Cloud Drive の %@ ほか %@ 件が更新されました。</translation>
    </message>
    <message>
        <source>%@ has been deleted from your Cloud Drive.</source>
        <translation>%@ が Cloud Drive から削除されました。</translation>
    </message>
    <message>
        <source>%@ and %@ more have been deleted from your Cloud Drive.</source>
        <translation>%@ ほか %@ 件が Cloud Drive から削除されました。</translation>
    </message>
    <message>
        <source>%@ has been renamed to %@.</source>
        <translation>%@ の名前が %@ に変更されました。</translation>
    </message>
    <message>
        <source>%@ has been moved to %@.</source>
        <translation>%@ が %@ に移動されました。</translation>
    </message>
    <message>
        <source>%@ has shared %@ with you.</source>
        <translation>%@ さんが %@ を共有しました。</translation>
    </message>
    <message>
        <source>%@ no longer shares %@ with you.</source>
        <translation>%@ さんが %@ の共有を解除しました。</translation>
    </message>
    <message>
        <source>%@ has been restored to your Cloud Drive.</source>
        <translation>%@ が Cloud Drive に復元されました。</translation>
    </message>
    <message>
        <source>You have signed out. Your Cloud Drive is no longer synced.</source>
        <translation>サインアウトしました。Cloud Drive は同期されません。</translation>
    </message>
    <message>
        <source>Your account has been signed in on %@.</source>
        <translation>%@ でアカウントへのサインインがありました。</translation>
    </message>
    <message>
        <source>Your session has ended. Sign in again.</source>
        <translation>セッションが終了しました。もう一度サインインしてください。</translation>
    </message>
    <message>
        <source>Your password has been changed. Sign in again to go on syncing.</source>
        <translation>パスワードが変更されました。同期を続けるには、もう一度サインインしてください。</translation>
    </message>
    <message>
        <source>You have used %@ of your storage.</source>
        <translation>ストレージの %@ を使用しています。</translation>
    </message>
    <message>
        <source>You have used %@ of %@.</source>
        <translation>%@ を使用しています (合計 %@)。</translation>
    </message>
    <message>
        <source>You have exceeded the allocated quota limit. Upgrade your account to go on syncing.</source>
        <translation>割り当てられた容量の上限を超えました。同期を続けるには、アカウントをアップグレードしてください。</translation>
    </message>
    <message>
        <source>Your account has enough space again. Syncing goes on.</source>
        <translation>アカウントの空き容量が確保されました。同期を再開します。</translation>
    </message>
    <message>
        <source>Your account has expired. Renew it to go on backing up and syncing.</source>
        <translation>アカウントの有効期限が切れました。バックアップと同期を続けるには、更新してください。</translation>
    </message>
    <message>
        <source>Your account has been cancelled.</source>
        <translation>お使いのアカウントは解約されました。</translation>
    </message>
    <message>
        <source>Your plan has been changed to %@.</source>
        <translation>プランが %@ に変更されました。</translation>
    </message>
    <message>
        <source>Your backup has been completed.</source>
        <translation>バックアップが完了しました。</translation>
    </message>
    <message>
        <source>Your backup has been completed: %@ of %@ files are stored.</source>
        <translation>バックアップが完了しました: ファイル %@/%@ 件を保存しました。</translation>
    </message>
    <message>
        <source>Your backup has failed.</source>
        <translation>バックアップに失敗しました。</translation>
    </message>
    <message>
        <source>Your backup has failed: %@</source>
        <translation>バックアップに失敗しました: %@</translation>
    </message>
    <message>
        <source>Your backup has been stopped.</source>
        <translation>バックアップは中止されました。</translation>
    </message>
    <message>
        <source>Your restore has been completed.</source>
        <translation>復元が完了しました。</translation>
    </message>
    <message>
        <source>Your restore has been completed: %@ of %@ files are back.</source>
        <translation>復元が完了しました: ファイル %@/%@ 件を復元しました。</translation>
    </message>
    <message>
        <source>Your restore has failed.</source>
        <translation>復元に失敗しました。</translation>
    </message>
    <message>
        <source>Your restore has failed: %@</source>
        <translation>復元に失敗しました: %@</translation>
    </message>
    <message>
        <source>Syncing has been paused.</source>
        <translation>同期を一時停止しました。</translation>
    </message>
    <message>
        <source>Syncing has been resumed.</source>
        <translation>同期を再開しました。</translation>
    </message>
    <message>
        <source>Your Cloud Drive folder has been moved to %@.</source>
        <translation>Cloud Drive フォルダが %@ に移動されました。</translation>
    </message>
    <message>
        <source>Your Cloud Drive folder could not be moved.</source>
        <translation>Cloud Drive フォルダを移動できませんでした。</translation>
    </message>
    <message>
        <source>Your Cloud Drive folder has been deleted. Syncing has stopped.</source>
        <translation>Cloud Drive フォルダが削除されたため、同期を停止しました。</translation>
    </message>
    <message>
        <source>The folders to sync have been changed.</source>
        <translation>同期するフォルダが変更されました。</translation>
    </message>
    <message>
        <source>Your account has been reset on the web. Cloud Drive has been turned off on this computer.</source>
        <translation>アカウントが Web でリセットされました。このコンピュータの Cloud Drive は無効になりました。</translation>
    </message>
    <message>
        <source>This computer has been removed from your account.</source>
        <translation>このコンピュータはアカウントから削除されました。</translation>
    </message>
    <message>
        <source>This computer has been replaced by %@ in your account.</source>
        <translation>このコンピュータはアカウント内で %@ に置き換えられました。</translation>
    </message>
    <message>
        <source>%@ keeps watch here. Click the icon to see your backups and to change your settings.</source>
        <translation>%@ はここで動作しています。アイコンをクリックすると、バックアップの確認や設定の変更ができます。</translation>
    </message>
    <message>
        <source>Online backup</source>
        <translation>オンラインバックアップ</translation>
    </message>
    <message>
        <source>Online restore</source>
        <translation>オンライン復元</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
    <message>
        <source>Online delete</source>
        <translation>オンライン削除</translation>
    </message>
    <message>
        <source>click here</source>
        <translation>ここをクリック</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>ここをクリック</translation>
    </message>
    <message>
        <source>Click here to edit the cut-off time.</source>
        <translation>ここをクリックして終了時刻を編集してください。</translation>
    </message>
    <message>
        <source>Click here to view excluded files / folders</source>
        <translation>ここをクリックして除外されたファイル / フォルダを表示</translation>
    </message>
    <message>
        <source>Reason: Missing permission for one or more files / folders in the backup set content.</source>
        <translation>理由: バックアップセット内の 1 つ以上のファイル / フォルダに対する権限がありません。</translation>
    </message>
    <message>
        <source>Some files / folders could not be backed up due to missing permissions.</source>
        <translation>権限がないため、一部のファイル / フォルダをバックアップできませんでした。</translation>
    </message>
    <message>
        <source>Reason: Missing permission for one or more files / folders in the backup set content. %@</source>
        <translation>理由: バックアップセット内の 1 つ以上のファイル / フォルダに対する権限がありません。 %@</translation>
    </message>
    <message>
        <source>Some files / folders could not be backed up due to missing permissions. %@</source>
        <translation>権限がないため、一部のファイル / フォルダをバックアップできませんでした。 %@</translation>
    </message>
    <message>
        <source>To enable access, add %@ and %@ under Full Disk Access. To know more visit %@.
</source>
        <translation>アクセスを有効にするには、「フルディスクアクセス」に %@ と %@ を追加してください。詳細については %@ を参照してください。
</translation>
    </message>
    <message>
        <source>Grant full disk access to %@.</source>
        <translation>%@ にフルディスクアクセスを許可してください。</translation>
    </message>
    <message>
        <source>Full Disk Access</source>
        <translation>フルディスクアクセス</translation>
    </message>
    <message>
        <source>To know more visit %@</source>
        <translation>詳細については %@ を参照してください</translation>
    </message>
    <message>
        <source>To know more, read FAQ.</source>
        <translation>詳細については、FAQ をお読みください。</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>詳細</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>概要</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>アップロード</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>ダウンロード</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>名前の変更</translation>
    </message>
    <message>
        <source>Continuous data protection</source>
        <translation>継続的データ保護</translation>
    </message>
    <message>
        <source>Archive cleanup</source>
        <translation>アーカイブのクリーンアップ</translation>
    </message>
    <message>
        <source>Putback</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>Sync</source>
        <translation>同期</translation>
    </message>
    <message>
        <source>Local backup</source>
        <translation>ローカルバックアップ</translation>
    </message>
    <message>
        <source>Local restore</source>
        <translation>ローカル復元</translation>
    </message>
    <message>
        <source>Local delete</source>
        <translation>ローカル削除</translation>
    </message>
    <message>
        <source>Express backup</source>
        <translation>エクスプレスバックアップ</translation>
    </message>
    <message>
        <source>Express restore</source>
        <translation>エクスプレス復元</translation>
    </message>
    <message>
        <source>Express delete</source>
        <translation>エクスプレス削除</translation>
    </message>
    <message>
        <source>Network and external drive backup</source>
        <translation>ネットワークドライブと外付けドライブのバックアップ</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>... 
 [Log clipped]  </source>
        <translation>... 
 [ログは省略されています]  </translation>
    </message>
    <message>
        <source>View entire log</source>
        <translation>ログ全体を表示</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>すべて選択</translation>
    </message>
    <message>
        <source>Select another</source>
        <translation>別のフォルダを選択</translation>
    </message>
    <message>
        <source>Selected folder doesn&apos;t have write permission. </source>
        <translation>選択したフォルダに書き込み権限がありません。 </translation>
    </message>
    <message>
        <source>Unable to write the file(s)</source>
        <translation>ファイルに書き込めません</translation>
    </message>
    <message>
        <source>Activity logs</source>
        <translation>アクティビティログ</translation>
    </message>
    <message>
        <source>View logs from</source>
        <translation>ログの表示期間</translation>
    </message>
    <message>
        <source>Past week</source>
        <translation>過去1週間</translation>
    </message>
    <message>
        <source>Past 2 weeks</source>
        <translation>過去2週間</translation>
    </message>
    <message>
        <source>Past month</source>
        <translation>過去1か月</translation>
    </message>
    <message>
        <source>Beginning of time</source>
        <translation>すべての期間</translation>
    </message>
    <message>
        <source>Archived logs</source>
        <translation>アーカイブ済みのログ</translation>
    </message>
    <message>
        <source>Operation</source>
        <translation>操作</translation>
    </message>
    <message>
        <source>Date and time</source>
        <translation>日時</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>所要時間</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>ファイル数</translation>
    </message>
    <message>
        <source>Delete Log</source>
        <translation>ログを削除</translation>
    </message>
    <message>
        <source>No items found</source>
        <translation>項目が見つかりません</translation>
    </message>
    <message>
        <source>Reading the logs...</source>
        <translation>ログを読み込んでいます...</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>Delete selected item(s)</source>
        <translation>選択した項目を削除</translation>
    </message>
    <message>
        <source>Delete all items</source>
        <translation>すべての項目を削除</translation>
    </message>
    <message>
        <source>Archive</source>
        <translation>アーカイブ</translation>
    </message>
    <message>
        <source>Would you like to delete all item(s)?</source>
        <translation>すべての項目を削除しますか?</translation>
    </message>
    <message>
        <source>Would you like to delete selected item?</source>
        <translation>選択した項目を削除しますか?</translation>
    </message>
    <message>
        <source>Would you like to delete selected item(s)?</source>
        <translation>選択した項目を削除しますか?</translation>
    </message>
    <message>
        <source>Success</source>
        <translation>成功</translation>
    </message>
    <message>
        <source>Failure</source>
        <translation>失敗</translation>
    </message>
    <message>
        <source>In Progress</source>
        <translation>実行中</translation>
    </message>
    <message>
        <source>Look in:</source>
        <translation>場所:</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>フォルダ:</translation>
    </message>
    <message>
        <source>Kind:</source>
        <translation>種類:</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>キャンセル済み</translation>
    </message>
</context>
</TS>
